#pragma once

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <string>

/// Runs a body in a process of its own, which ends with 1 when an expectation in it failed.
template <class Body>
[[nodiscard]] pid_t StartChild(const Body& body)
{
    const pid_t child = ::fork();
    if (child == 0) {
        body();
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    return child;
}

/// How a child ended, as waitpid tells it.
[[nodiscard]] inline int Await(pid_t child)
{
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return status;
}

/// Has the kernel kill this very process with SIGALRM, at whatever point it then is.
inline void KillThisProcessAfter(std::chrono::microseconds delay)
{
    const itimerval when{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_usec = delay.count()}};
    EXPECT_EQ(::setitimer(ITIMER_REAL, &when, nullptr), 0);
}

/// Gives this process mounts that no other one sees.
inline void TakeOwnMounts()
{
    const std::string user = "0 " + std::to_string(::geteuid()) + " 1";
    const std::string group = "0 " + std::to_string(::getegid()) + " 1";
    if (::unshare(CLONE_NEWNS) != 0) {
        ASSERT_EQ(::unshare(CLONE_NEWUSER | CLONE_NEWNS), 0);
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << user;
        std::ofstream("/proc/self/gid_map") << group;
    }
    ASSERT_EQ(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
}

/// Lets a limit of this process, as setrlimit names it, be `value`.
inline void Limit(__rlimit_resource resource, rlim_t value)
{
    const rlimit limit{value, value};
    ASSERT_EQ(::setrlimit(resource, &limit), 0);
}

/// Expects nothing to fail in a body that does to its process what cannot be taken back. A child that is busy for
/// longer than some seconds hangs.
template <class Body>
void ExpectHoldsInChild(const Body& body)
{
    const int status = Await(StartChild([&] {
        Limit(RLIMIT_CPU, 5);
        body();
    }));
    EXPECT_EQ(status, 0) << "see the child's failures above";
}
