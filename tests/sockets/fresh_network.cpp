#include "sockets/fresh_network.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>

#include <cstdlib>
#include <fstream>

namespace platform::sockets {

FreshNetwork::FreshNetwork() : former_(::open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC))
{
    EXPECT_EQ(0, ::unshare(CLONE_NEWNET));
}

FreshNetwork::~FreshNetwork()
{
    EXPECT_EQ(0, ::setns(former_.Number(), CLONE_NEWNET));
}

void FreshNetwork::BringLoopBackUp()
{
    EXPECT_EQ(0, std::system("ip link set lo up multicast off"));
}

void FreshNetwork::LeaveOneFreePort(int port)
{
    std::ofstream range("/proc/sys/net/ipv4/ip_local_port_range");
    range << port << ' ' << port << std::endl;
    EXPECT_TRUE(range.good());
}

void FreshNetwork::AddOutwardInterface()
{
    EXPECT_EQ(0, std::system("ip link add outward type veth peer name farside && "
                             "ip address add 10.1.2.3/24 dev outward && ip link set outward up"));
}

}  // namespace platform::sockets
