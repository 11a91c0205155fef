#include "platform/window/painting_thread.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QScrollBar>
#include <QTest>
#include <QThreadPool>

namespace platform::window {
namespace {

/// While it lives the system gives this process no descriptor.
class NoMoreDescriptors {
public:
    NoMoreDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit none{.rlim_cur = 0, .rlim_max = before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoMoreDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }
    NoMoreDescriptors(const NoMoreDescriptors&) = delete;
    NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;

private:
    rlimit before_{};
};

/// Without the thread GLib would end this program.
TEST(PaintingThread, IsThereWhenTheSystemHasNoDescriptorLeft)
{
    QThreadPool& pool = *QThreadPool::globalInstance();
    pool.waitForDone();  // what earlier tests have painted
    StartPaintingThread();
    ASSERT_TRUE(QTest::qWaitFor([&] { return pool.activeThreadCount() == 0; }));
    QScrollBar tall(Qt::Vertical);
    tall.resize(20, 400);
    const NoMoreDescriptors limit;
    EXPECT_FALSE(tall.grab().isNull());
}

}  // namespace
}  // namespace platform::window
