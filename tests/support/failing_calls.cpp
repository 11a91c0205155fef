#include "support/failing_calls.h"

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>

#include <bit>
#include <cstddef>
#include <thread>
#include <vector>

namespace {

static_assert(std::endian::native == std::endian::little, "the low half of an argument comes first");

constexpr std::uint32_t kNumber = offsetof(seccomp_data, nr);
constexpr std::uint32_t kLength = offsetof(seccomp_data, args) + 2 * sizeof(std::uint64_t);

sock_filter Load(std::uint32_t offset)
{
    return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offset);
}

/// Goes on when the loaded word has this value, otherwise passes over so many instructions.
sock_filter GoOnIf(std::uint32_t value, std::uint8_t otherwiseOver)
{
    return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, otherwiseOver);
}

sock_filter Answer(std::uint32_t answer)
{
    return BPF_STMT(BPF_RET | BPF_K, answer);
}

}  // namespace

/// Filters are for good, but for the calling thread only.
void FailEvery(const FailingCall& call)
{
    std::vector<sock_filter> filter = {Load(kNumber)};
    if (call.length)
        filter.insert(filter.end(), {GoOnIf(static_cast<std::uint32_t>(call.number), 3), Load(kLength),
                                     GoOnIf(*call.length, 1)});
    else
        filter.push_back(GoOnIf(static_cast<std::uint32_t>(call.number), 1));
    filter.push_back(Answer(SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(call.error)));
    filter.push_back(Answer(SECCOMP_RET_ALLOW));
    const sock_fprog program{.len = static_cast<unsigned short>(filter.size()), .filter = filter.data()};
    ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
}

void WithFailingCall(const FailingCall& call, const std::function<void()>& body)
{
    std::thread([&] {
        FailEvery(call);
        if (!testing::Test::HasFatalFailure())
            body();
    }).join();
}
