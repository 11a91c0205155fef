#include "replay/clicker.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <memory>

namespace bench {
namespace {

constexpr std::chrono::milliseconds kBetweenClicks{20};

}  // namespace

Clicker::Clicker(QAbstractButton& button)
    : button_(button),
      mouse_(QPointingDevice::primaryPointingDevice()),
      // The button's own handler was connected earlier, so it has run.
      handled_(QObject::connect(&button, &QAbstractButton::clicked, [this] { Handled(); })),
      thread_([this] {
          for (; !stopping_; std::this_thread::sleep_for(kBetweenClicks))
              Click();
      })
{}

Clicker::~Clicker()
{
    stopping_ = true;
    thread_.join();
    QObject::disconnect(handled_);
}

std::size_t Clicker::Waiting()
{
    const std::lock_guard lock(mutex_);
    return posted_.size();
}

void Clicker::Click()
{
    const QPointF inside(5, 5);
    const auto event = [&](QEvent::Type type, Qt::MouseButtons buttons) {
        return std::make_unique<QMouseEvent>(type, inside, inside, Qt::LeftButton, buttons, Qt::NoModifier,
                                             mouse_);
    };
    auto press = event(QEvent::MouseButtonPress, Qt::LeftButton);
    auto release = event(QEvent::MouseButtonRelease, Qt::NoButton);
    {
        const std::lock_guard lock(mutex_);
        posted_.push_back(std::chrono::steady_clock::now());
    }
    QCoreApplication::postEvent(&button_, press.release());
    QCoreApplication::postEvent(&button_, release.release());
}

void Clicker::Handled()
{
    const auto now = std::chrono::steady_clock::now();
    const std::lock_guard lock(mutex_);
    latencies_.push_back(std::chrono::duration<double, std::milli>(now - posted_.front()).count());
    posted_.pop_front();
}

}  // namespace bench
