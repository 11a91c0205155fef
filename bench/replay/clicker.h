#pragma once

#include <QAbstractButton>
#include <QPointingDevice>
#include <atomic>
#include <chrono>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace bench {

/// Clicks a button from a thread of its own, as an operator would who does not wait, and notes how long each click
/// takes from the posting of its mouse events until its handler has run.
class Clicker {
public:
    /// Clicks until it is destroyed.
    explicit Clicker(QAbstractButton& button);
    Clicker(const Clicker&) = delete;
    Clicker& operator=(const Clicker&) = delete;
    ~Clicker();

    /// In milliseconds, of the clicks that were handled.
    [[nodiscard]] const std::vector<double>& Latencies() const { return latencies_; }

    /// Clicks that were posted and not handled yet.
    [[nodiscard]] std::size_t Waiting();

private:
    void Click();
    void Handled();

    QAbstractButton& button_;
    const QPointingDevice* mouse_;
    QMetaObject::Connection handled_;
    std::mutex mutex_;
    std::deque<std::chrono::steady_clock::time_point> posted_;
    std::vector<double> latencies_;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

}  // namespace bench
