#pragma once

#include <vector>

#include "fuzz_window/random.h"
#include "platform/posix/file_descriptor.h"

/// Peers at the program's port that mean no good.
class Crowd {
public:
    /// Listens, connects many times, sends datagrams, begins to behave in another manner, or leaves.
    void Change(Random& random);

    /// Accepts who has connected; each connection behaves.
    void Step();

    void Leave();

private:
    enum class Manner { kStall, kFlood, kEnd, kReset };

    void Listen();
    void Connect(int count);
    static void SendDatagrams();
    [[nodiscard]] bool Stays(const platform::FileDescriptor& connection) const;

    Manner manner_ = Manner::kFlood;
    platform::FileDescriptor listener_;
    std::vector<platform::FileDescriptor> connections_;
};
