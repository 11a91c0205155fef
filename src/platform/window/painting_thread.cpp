#include "platform/window/painting_thread.h"

#include <QThread>
#include <QThreadPool>
#include <memory>

#include "platform/failure.h"

namespace platform::window {
namespace {

/// The pool does not tell that it got no thread, so another thread is tried first.
void ThrowIfNoThreadStarts()
{
    const std::unique_ptr<QThread> trial(QThread::create([] {}));
    trial->start();
    if (!trial->isRunning() && !trial->isFinished())
        throw Failure(failure::kOutOfMemory, "The system gives no thread");
    trial->wait();
}

}  // namespace

void StartPaintingThread()
{
    constexpr int kNever = -1;
    ThrowIfNoThreadStarts();
    QThreadPool& pool = *QThreadPool::globalInstance();
    pool.setMaxThreadCount(1);
    pool.setExpiryTimeout(kNever);
    pool.start([] {});
}

}  // namespace platform::window
