#include "platform/window/painting_thread.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QScrollBar>
#include <QTest>
#include <QThreadPool>

namespace platform::window {
namespace {

/// Without the thread GLib would end this program.
TEST(PaintingThread, IsThereWhenTheSystemHasNoDescriptorLeft)
{
    QThreadPool& pool = *QThreadPool::globalInstance();
    pool.waitForDone();  // what earlier tests have painted
    StartPaintingThread();
    ASSERT_TRUE(QTest::qWaitFor([&] { return pool.activeThreadCount() == 0; }));
    QScrollBar tall(Qt::Vertical);
    tall.resize(20, 400);
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_FALSE(tall.grab().isNull());
    ::setrlimit(RLIMIT_NOFILE, &before);
}

}  // namespace
}  // namespace platform::window
