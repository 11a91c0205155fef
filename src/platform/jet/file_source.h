#pragma once

#include <string>

#include "platform/jet/byte_source.h"
#include "platform/posix/file_descriptor.h"

namespace platform::jet {

/// A file, open for reading alone and without a lock, so that others may have it open for writing.
class FileSource : public ByteSource {
public:
    /// Failure: kDatabaseNotFound, kInvalidDatabasePath, kDatabaseCannotBeOpened (also for what is no regular
    /// file).
    explicit FileSource(const std::string& path);

    [[nodiscard]] std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> buffer) const override;
    [[nodiscard]] std::uint64_t Size() const override;

private:
    FileDescriptor file_;
};

}  // namespace platform::jet
