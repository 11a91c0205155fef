#pragma once

#include <string>

#include "platform/locked_text_file.h"
#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// A text file of this machine, locked. Its lines pass through a small buffer, whatever its size.
class LockedDiskFile final : public LockedTextFile {
public:
    /// Failure: as for FileSystem::OpenLocked.
    explicit LockedDiskFile(const std::string& path);

    [[nodiscard]] std::int64_t CountLines() const override;
    void KeepLines(const std::function<bool(std::int64_t number, std::string_view line)>& keep) override;

private:
    std::string path_;
    FileDescriptor file_;
};

}  // namespace platform::files
