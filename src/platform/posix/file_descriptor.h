#pragma once

#include <unistd.h>

#include <utility>

namespace platform {

/// Owns an open file descriptor, or none. Destroy what watches it first.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, kNone)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        FileDescriptor taken(std::move(other));
        std::swap(number_, taken.number_);
        return *this;
    }
    ~FileDescriptor() { Close(); }

    [[nodiscard]] bool IsOpen() const { return number_ != kNone; }
    [[nodiscard]] int Number() const { return number_; }

    void Close()
    {
        if (IsOpen())
            ::close(std::exchange(number_, kNone));
    }

private:
    static constexpr int kNone = -1;
    int number_ = kNone;
};

}  // namespace platform
