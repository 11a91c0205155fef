#pragma once

#include <vector>

#include "fuzz_window/random.h"
#include "platform/posix/file_descriptor.h"

/// Peers at the program's port that mean no good. They act when Step is called.
class Crowd {
public:
    /// Begins to listen, stops it, changes how peers behave, sends a crowd of connections or datagrams, or resets
    /// them all.
    void Change(Random& random);

    void Step();

    void Leave();

private:
    enum class Manner { kStall, kRead, kFlood, kEnd, kReset };

    void Listen();
    void Connect(int count);
    void SendDatagrams() const;
    void Accept();
    [[nodiscard]] bool Behave(platform::FileDescriptor& connection) const;

    Manner manner_ = Manner::kRead;
    platform::FileDescriptor listener_;
    std::vector<platform::FileDescriptor> connections_;
};
