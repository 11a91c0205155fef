#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files/file_descriptor.h"

namespace platform::files {

/// Reads a file line by line from its beginning, holding a piece of it at a time (and, of a line longer than
/// that, the whole line). What a line is, LockedTextFile says.
class LineReader {
public:
    /// Borrows the file, which must outlive the reader.
    LineReader(const FileDescriptor& file, const std::string& path);

    /// The next line without its line end, valid until the next call; nothing at the end of the file.
    /// Failure: kPathFileAccess.
    [[nodiscard]] std::optional<std::string_view> Next();

private:
    bool ReadMore();

    const FileDescriptor& file_;
    std::string path_;
    std::int64_t position_ = 0;
    std::string buffer_;
    std::size_t begin_ = 0;
};

}  // namespace platform::files
