#include "make_database/page_store.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/failure.h"

namespace tools {
namespace {

constexpr std::size_t kWriteBufferSize = 1 << 20;

/// Commit would replace a device, /dev/null say, by a file.
void FailUnlessReplaceable(const std::string& path)
{
    std::error_code ignored;
    const auto type = std::filesystem::status(path, ignored).type();
    using std::filesystem::file_type;
    if (type != file_type::regular && type != file_type::not_found && type != file_type::none)
        throw platform::Failure(platform::failure::kPathFileAccess,
                                path + ": is not a file that can be replaced");
}

}  // namespace

void MemoryPages::Write(std::uint32_t number, const Bytes& page)
{
    const std::size_t offset = number * page.size();
    if (content_.size() < offset + page.size())
        content_.resize(offset + page.size());
    content_.replace(offset, page.size(), page);
}

FilePages::FilePages(const std::string& path)
    : path_(path), partPath_(path + ".part"), buffer_(kWriteBufferSize)
{
    FailUnlessReplaceable(path);
    errno = 0;
    file_.rdbuf()->pubsetbuf(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    file_.open(partPath_, std::ios::binary | std::ios::trunc);
    FailUnlessGood();
}

FilePages::~FilePages()
{
    file_.close();
    std::error_code ignored;
    std::filesystem::remove(partPath_, ignored);
}

void FilePages::Write(std::uint32_t number, const Bytes& page)
{
    errno = 0;
    const auto size = static_cast<std::streamoff>(page.size());
    if (number != nextInPlace_)
        file_.seekp(number * size);
    file_.write(page.data(), size);
    nextInPlace_ = number + 1;
    FailUnlessGood();
}

void FilePages::Commit()
{
    errno = 0;
    file_.close();
    FailUnlessGood();
    std::error_code error;
    std::filesystem::rename(partPath_, path_, error);
    if (error)
        throw platform::Failure(platform::failure::kPathFileAccess, path_ + ": " + error.message());
}

void FilePages::FailUnlessGood() const
{
    if (file_)
        return;
    const int error = errno;
    const std::string reason = error == 0 ? "" : ": " + std::generic_category().message(error);
    throw platform::Failure(
        error == ENOSPC ? platform::failure::kDiskFull : platform::failure::kPathFileAccess,
        path_ + ": cannot be written" + reason);
}

}  // namespace tools
