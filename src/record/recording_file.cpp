#include "record/recording_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <limits>
#include <system_error>
#include <utility>

#include "make_database/receipt_reader.h"
#include "platform/failure.h"
#include "platform/posix/system_calls.h"

namespace record {
namespace {

constexpr std::int64_t kLastRef = std::numeric_limits<std::int32_t>::max();

platform::FileDescriptor Open(const std::string& path, int flags)
{
    constexpr int kForAll = 0666;  // what the user's mask leaves of it
    return platform::FileDescriptor(::open(path.c_str(), flags | O_APPEND | O_CLOEXEC, kForAll));
}

std::string FirstBytes(const std::string& path, std::size_t count)
{
    std::string bytes(count, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

}  // namespace

WrongUsage::WrongUsage(std::string description)
    : platform::Failure(platform::failure::kInvalidCall, std::move(description))
{}

RecordingFile::RecordingFile(std::string path, OnExisting onExisting)
    : path_(std::move(path)), file_(Open(path_, O_WRONLY | O_CREAT | O_EXCL))
{
    isNew_ = file_.IsOpen();
    if (!isNew_ && errno != EEXIST)
        Fail(errno, "cannot be made");
    if (!isNew_ && onExisting == OnExisting::kRefuse)
        throw WrongUsage(path_ + " is there already; --append goes on in it");
    if (isNew_)
        Begin();
    else
        GoOn();
}

void RecordingFile::Begin()
try {
    KeepOthersOut();
    WriteColumns();
} catch (...) {
    RemoveIfNew();
    throw;
}

void RecordingFile::GoOn()
{
    // A pipe or a device is not opened at all: that could wait for ever, or change something.
    if (!std::filesystem::is_regular_file(path_))
        throw WrongUsage(path_ + " is no file to go on in");
    file_ = Open(path_, O_WRONLY);
    if (!file_.IsOpen())
        Fail(errno, "cannot be written");
    KeepOthersOut();
    size_ = std::filesystem::file_size(path_);
    const bool beginsOnly = size_ < kColumns.size() && kColumns.starts_with(FirstBytes(path_, size_));
    if (!beginsOnly) {
        TakeStock();
        return;
    }
    // Nothing but a piece of the first line, where even that was cut off.
    tornBytes_ = std::exchange(size_, 0);
    CutTo(0);
    WriteColumns();
}

void RecordingFile::KeepOthersOut()
{
    if (::flock(file_.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        throw WrongUsage(path_ + " is being recorded to by another program");
}

/// Finds the last whole row and the greatest `ref`, and takes away what is behind that row.
void RecordingFile::TakeStock()
try {
    std::ifstream file(path_, std::ios::binary);
    if (!file.is_open())
        Fail(errno, "cannot be read");
    tools::ReceiptReader reader(file);
    if (!reader.IsRecording())
        throw WrongUsage(path_ + " is no recording: its columns are others");
    std::int64_t last = 0;
    for (tools::Receipt receipt; reader.Next(receipt);)
        last = std::max<std::int64_t>(last, receipt.ref.value_or(0));
    nextRef_ = last + 1;
    tornBytes_ = reader.Tail() == tools::CsvTail::kTorn ? size_ - reader.WholeBytes() : 0;
    size_ -= tornBytes_;
    if (tornBytes_ > 0)
        CutTo(size_);
    lastRowMayBeTorn_ = reader.Tail() == tools::CsvTail::kNoLineEnd;
    if (lastRowMayBeTorn_)
        AppendBytes("\n");
} catch (const platform::Failure& failure) {
    if (failure.Number() != platform::failure::kTypeMismatch)
        throw;
    throw WrongUsage(path_ + " is no recording: " + failure.Description());
}

/// The columns and the file's name are on the disk before the first record.
void RecordingFile::WriteColumns()
{
    AppendBytes(std::string(kColumns));
    Sync();
    const auto folder = std::filesystem::path(path_).parent_path();
    const platform::FileDescriptor opened(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.IsOpen())
        ::fsync(opened.Number());
}

void RecordingFile::Add(Row row)
{
    if (nextRef_ > kLastRef)
        Fail(EFBIG, "has no ref left for another record");
    row.ref = static_cast<std::int32_t>(nextRef_++);
    AppendLine(added_, row);
    addedEnds_.push_back(added_.size());
}

void RecordingFile::Write()
{
    AppendBytes(added_);
    rows_ += addedEnds_.size();
    added_.clear();
    addedEnds_.clear();
}

void RecordingFile::Sync()
{
    if (platform::Uninterrupted([this] { return ::fdatasync(file_.Number()); }) != 0)
        Fail(errno, "cannot be brought to the disk");
}

void RecordingFile::RemoveIfNew()
{
    if (isNew_)
        ::unlink(path_.c_str());
}

void RecordingFile::AppendBytes(const std::string& bytes)
{
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = platform::Uninterrupted(
            [&] { return ::write(file_.Number(), bytes.data() + written, bytes.size() - written); });
        if (count <= 0) {
            const int error = count < 0 ? errno : ENOSPC;
            KeepWholeRows(written);
            Fail(error, "cannot be written");
        }
        written += static_cast<std::size_t>(count);
    }
    size_ += bytes.size();
}

void RecordingFile::KeepWholeRows(std::size_t writtenBytes)
{
    const auto firstTorn = std::ranges::upper_bound(addedEnds_, writtenBytes);
    const std::size_t whole = firstTorn == addedEnds_.begin() ? 0 : *std::prev(firstTorn);
    rows_ += static_cast<std::uint64_t>(firstTorn - addedEnds_.begin());
    size_ += whole;
    added_.clear();
    addedEnds_.clear();
    // Where even this fails the torn row stays. Who reads the file leaves it out.
    static_cast<void>(::ftruncate(file_.Number(), static_cast<off_t>(size_)));
}

void RecordingFile::CutTo(std::uint64_t size)
{
    if (platform::Uninterrupted([&] { return ::ftruncate(file_.Number(), static_cast<off_t>(size)); }) != 0)
        Fail(errno, "cannot be written");
}

void RecordingFile::Fail(int error, const char* what) const
{
    throw platform::Failure(platform::failure::kPathFileAccess,
                            path_ + " " + what + ": " + std::generic_category().message(error));
}

}  // namespace record
