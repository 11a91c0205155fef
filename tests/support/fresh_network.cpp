#include "support/fresh_network.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>

#include <cstdlib>

FreshNetwork::FreshNetwork() : former_(::open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC))
{
    EXPECT_EQ(0, ::unshare(CLONE_NEWNET));
}

FreshNetwork::~FreshNetwork()
{
    EXPECT_EQ(0, ::setns(former_.Number(), CLONE_NEWNET));
}

void FreshNetwork::Run(const char* command)
{
    EXPECT_EQ(0, std::system(command)) << command;
}
