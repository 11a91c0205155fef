#include "platform/files/line_reader.h"

#include "platform/files/open_file.h"

namespace platform::files {
namespace {

constexpr std::size_t kBufferSize = std::size_t{256} * 1024;

}  // namespace

LineReader::LineReader(const FileDescriptor& file, const std::string& path) : file_(file), path_(path) {}

std::optional<LineReader::Piece> LineReader::Next()
{
    std::size_t feed = buffer_.find('\n', begin_);
    if (feed == std::string::npos) {
        ReadOn();
        feed = buffer_.find('\n', begin_);
    }
    if (feed != std::string::npos) {
        const std::size_t size = feed - begin_;
        const std::size_t carriageReturn = size > 0 && buffer_[feed - 1] == '\r' ? 1 : 0;
        return Take(size - carriageReturn, carriageReturn + 1, true);
    }
    const std::size_t rest = buffer_.size() - begin_;
    if (!atEndOfFile_) {
        // A carriage return at the very end may belong to the line end that comes next.
        return Take(buffer_.ends_with('\r') ? rest - 1 : rest, 0, false);
    }
    if (rest == 0 && !inLine_)
        return std::nullopt;
    return Take(rest, 0, true);
}

/// Moves what has not been taken yet to the front of the buffer and fills the rest from the file.
void LineReader::ReadOn()
{
    buffer_.erase(0, begin_);
    begin_ = 0;
    const std::size_t kept = buffer_.size();
    buffer_.resize(kBufferSize);
    const std::size_t count = ReadAt(file_, position_, buffer_.data() + kept, kBufferSize - kept, path_);
    position_ += static_cast<std::int64_t>(count);
    buffer_.resize(kept + count);
    atEndOfFile_ = buffer_.size() < kBufferSize;
}

LineReader::Piece LineReader::Take(std::size_t size, std::size_t lineEndSize, bool endsLine)
{
    const Piece piece{std::string_view(buffer_).substr(begin_, size), endsLine};
    begin_ += size + lineEndSize;
    inLine_ = !endsLine;
    return piece;
}

}  // namespace platform::files
