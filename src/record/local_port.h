#pragma once

#include <string>

#include "platform/posix/file_descriptor.h"
#include "record/command_line.h"

namespace record {

/// A socket that is bound to a port: on one address of this machine, or on all where the host is empty. Port 0
/// is any free one. A port for datagrams is not shared, so that no other program goes without its own. WrongUsage
/// where the host is no address in digits. Failure: kAddressInUse and the like.
[[nodiscard]] platform::FileDescriptor OpenLocalPort(const HostAndPort& at, int type);

/// A socket for the datagrams of a multicast group, with the interfaces on which it is joined.
struct JoinedGroup {
    platform::FileDescriptor socket;
    std::string interfaces;  ///< by name: "lo, eth0"
};

/// Joins a group on every interface, up or not: which one the feed comes on is the network's matter. The port
/// is shared with other members on this machine. WrongUsage where the host is no group. Failure where no
/// interface can join.
[[nodiscard]] JoinedGroup JoinGroup(const HostAndPort& at);

}  // namespace record
