#include "platform/posix/standard_error.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cerrno>

#include "support/failing_calls.h"

namespace platform::posix {
namespace {

TEST(StandardError, DropsWhatIsInterruptedForEver)
{
    StandardError output;
    WithFailingCall({.number = SYS_write, .error = EINTR, .length = 11},
                    [&] { output.WriteWithin("never seen\n", std::chrono::milliseconds(1)); });
}

}  // namespace
}  // namespace platform::posix
