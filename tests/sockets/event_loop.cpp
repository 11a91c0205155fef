#include "sockets/event_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <chrono>

namespace platform::sockets {
namespace {

constexpr std::chrono::milliseconds kDeadline{20000};
constexpr std::chrono::milliseconds kLook{1};
constexpr int kMostPasses = 1000;

}  // namespace

bool WaitFor(const std::function<bool()>& condition)
{
    const QDeadlineTimer deadline(kDeadline);
    QTimer look;  // what a condition waits for may raise no event here
    look.start(kLook);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

bool ComesToRest()
{
    for (int pass = 0; pass < kMostPasses; ++pass) {
        if (!QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents))
            return true;
    }
    return false;
}

}  // namespace platform::sockets
