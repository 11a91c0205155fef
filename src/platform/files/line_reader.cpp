#include "platform/files/line_reader.h"

#include "platform/files/open_file.h"

namespace platform::files {
namespace {

constexpr std::size_t kPiece = 256 * 1024;

}  // namespace

LineReader::LineReader(const FileDescriptor& file, const std::string& path) : file_(file), path_(path) {}

std::optional<std::string_view> LineReader::Next()
{
    std::size_t searched = begin_;
    std::size_t feed = buffer_.find('\n', searched);
    while (feed == std::string::npos) {
        searched = buffer_.size() - begin_;
        if (!ReadMore())
            break;
        feed = buffer_.find('\n', searched);
    }
    if (feed == std::string::npos && begin_ == buffer_.size())
        return std::nullopt;
    std::string_view line = std::string_view(buffer_).substr(begin_, feed - begin_);
    begin_ = feed == std::string::npos ? buffer_.size() : feed + 1;
    if (feed != std::string::npos && line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

/// Moves what is not yet taken to the front of the buffer and reads on behind it; false at the end of the
/// file.
bool LineReader::ReadMore()
{
    buffer_.erase(0, begin_);
    begin_ = 0;
    const std::size_t kept = buffer_.size();
    buffer_.resize(kept + kPiece);
    const std::size_t count = ReadAt(file_, position_, buffer_.data() + kept, kPiece, path_);
    position_ += static_cast<std::int64_t>(count);
    buffer_.resize(kept + count);
    return count > 0;
}

}  // namespace platform::files
