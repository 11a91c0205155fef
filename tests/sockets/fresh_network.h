#pragma once

#include "platform/posix/file_descriptor.h"

namespace platform::sockets {

/// A network of its own for the running test, whose only interface, the loop-back one, is down. Sockets that
/// were opened before stay where they were.
class FreshNetwork {
public:
    FreshNetwork();
    FreshNetwork(const FreshNetwork&) = delete;
    FreshNetwork& operator=(const FreshNetwork&) = delete;
    ~FreshNetwork();

    /// Without multicast, and without a route to any group.
    static void BringLoopBackUp();

    /// Sockets that ask for any free port can get no other one.
    static void LeaveOneFreePort(int port);

    /// Adds an interface "outward" that is up, can multicast and has an address, but no route to a group.
    static void AddOutwardInterface();

private:
    FileDescriptor former_;
};

}  // namespace platform::sockets
