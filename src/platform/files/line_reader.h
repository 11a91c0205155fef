#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// Reads a file line by line from its beginning, holding a quarter of a megabyte of it, however long its
/// lines are. What a line is, LockedTextFile says.
class LineReader {
public:
    /// A line without its line end; a line longer than a quarter of a megabyte comes in several pieces, of
    /// which only the last one ends it.
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
