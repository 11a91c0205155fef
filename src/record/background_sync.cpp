#include "record/background_sync.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>

#include "platform/failure.h"
#include "platform/posix/system_calls.h"

namespace record {
namespace {

constexpr std::chrono::seconds kBetween{1};

}  // namespace

BackgroundSync::BackgroundSync(platform::EventLoop& loop, int descriptor)
    : descriptor_(descriptor),
      second_(loop.NewAlarm([this] { SecondHasPassed(); })),
      thread_([this](const std::stop_token& stop) { Run(stop); })
{}

BackgroundSync::~BackgroundSync() = default;

void BackgroundSync::Written()
{
    if (isSet_)
        return;
    isSet_ = true;
    second_->Set(std::chrono::steady_clock::now() + kBetween);
}

void BackgroundSync::Finish()
{
    second_->Clear();
    thread_.request_stop();
    thread_.join();
    ThrowIfFailed();
}

void BackgroundSync::ThrowIfFailed() const
{
    if (error_ != 0)
        throw platform::Failure(
            platform::failure::kPathFileAccess,
            "The recording cannot be brought to the disk: " + std::generic_category().message(error_));
}

void BackgroundSync::SecondHasPassed()
{
    isSet_ = false;
    const std::lock_guard lock(mutex_);
    ThrowIfFailed();
    isWanted_ = true;
    wanted_.notify_one();
}

void BackgroundSync::Run(const std::stop_token& stop)
{
    std::unique_lock lock(mutex_);
    while (wanted_.wait(lock, stop, [this] { return isWanted_; })) {
        isWanted_ = false;
        lock.unlock();
        const int error =
            platform::Uninterrupted([this] { return ::fdatasync(descriptor_); }) == 0 ? 0 : errno;
        lock.lock();
        if (error_ == 0)
            error_ = error;
    }
}

}  // namespace record
