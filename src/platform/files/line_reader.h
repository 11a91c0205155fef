#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// Reads a file line by line from its beginning. A quarter of a megabyte of it is in memory at a time, so a longer line
/// comes in pieces. LockedTextFile says what a line is.
class LineReader {
public:
    /// A line without its line end, or a part of a long line, of which only the last part ends it.
    struct Piece {
        std::string_view text;
        bool endsLine;
    };

    /// Borrows the file, which must outlive the reader.
    LineReader(const FileDescriptor& file, const std::string& path);

    /// The next piece, valid until the next call; nothing at the end of the file. Failure: kPathFileAccess.
    [[nodiscard]] std::optional<Piece> Next();

private:
    void ReadOn();
    Piece Take(std::size_t size, std::size_t lineEndSize, bool endsLine);

    const FileDescriptor& file_;
    std::string path_;
    std::int64_t position_ = 0;
    std::string buffer_;
    std::size_t begin_ = 0;
    bool atEndOfFile_ = false;
    bool inLine_ = false;
};

}  // namespace platform::files
