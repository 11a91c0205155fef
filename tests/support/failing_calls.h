#pragma once

#include <cstdint>
#include <functional>
#include <optional>

/// A system call that the kernel refuses, without even trying it.
struct FailingCall {
    long number;  // __NR_sendto and the like
    int error;
    /// Only the calls with this length; all without one. (The sanitizers write for themselves.)
    std::optional<std::uint32_t> length = std::nullopt;
};

/// From now on the call fails in this thread.
void FailEvery(const FailingCall& call);

/// Runs the body in a thread of its own, in which the call fails.
void WithFailingCall(const FailingCall& call, const std::function<void()>& body);
