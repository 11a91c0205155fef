#pragma once

#include <unistd.h>

#include <utility>

namespace platform::files {

/// Owns one open file; closes it, and with it gives up its lock, at the end.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor = kNone) : descriptor_(descriptor) {}
    ~FileDescriptor()
    {
        if (IsOpen())
            ::close(descriptor_);
    }

    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, kNone)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }

    [[nodiscard]] bool IsOpen() const { return descriptor_ != kNone; }
    [[nodiscard]] int Get() const { return descriptor_; }

private:
    static constexpr int kNone = -1;

    int descriptor_;
};

}  // namespace platform::files
