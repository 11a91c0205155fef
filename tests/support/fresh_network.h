#pragma once

#include "platform/posix/file_descriptor.h"

/// A network of its own for the running test, whose only interface, the loop-back one, is down. Sockets that
/// were opened before stay where they were.
class FreshNetwork {
public:
    FreshNetwork();
    FreshNetwork(const FreshNetwork&) = delete;
    FreshNetwork& operator=(const FreshNetwork&) = delete;
    ~FreshNetwork();

    /// Without multicast, and without a route to any group.
    static void BringLoopBackUp() { Run("ip link set lo up multicast off"); }

    /// Sets the network up with a shell command, which must succeed.
    static void Run(const char* command);

private:
    platform::FileDescriptor former_;
};
