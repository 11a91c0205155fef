#include "platform/posix/standard_error.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/file_descriptor.h"
#include "support/failing_calls.h"

namespace platform::posix {
namespace {

TEST(StandardError, DropsWhatIsInterruptedForEver)
{
    int ends[2] = {};
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
    const FileDescriptor reader(ends[0]);
    const FileDescriptor writer(ends[1]);
    const FileDescriptor usual(::dup(STDERR_FILENO));
    ::dup2(writer.Number(), STDERR_FILENO);
    StandardError output;
    ::dup2(usual.Number(), STDERR_FILENO);
    WithFailingCall({.number = SYS_write, .error = EINTR, .length = 11},
                    [&] { output.WriteWithin("never seen\n", std::chrono::milliseconds(1)); });
    output.Write("seen");
    char text[20] = {};
    EXPECT_EQ(::read(reader.Number(), text, sizeof text), 4);
}

}  // namespace
}  // namespace platform::posix
