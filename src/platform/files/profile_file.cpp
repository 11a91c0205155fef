#include "platform/files/profile_file.h"

#include <algorithm>
#include <array>
#include <exception>

#include "platform/files/open_file.h"
#include "platform/files/profile_text.h"
#include "platform/files/replace_file.h"

namespace platform::files {
namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;

/// Settings take a kilobyte or two. What is so much larger has got that name by mistake.
constexpr std::size_t kLargestFile = std::size_t{16} * 1024 * 1024;

std::string ReadAll(const FileDescriptor& file, const std::string& path)
{
    std::string content;
    std::array<char, kPiece> piece;
    std::size_t count = 0;
    do {
        count = ReadAt(file, static_cast<std::int64_t>(content.size()), piece.data(), piece.size(), path);
        content.append(piece.data(), count);
        if (content.size() > kLargestFile)
            ThrowFailure(std::make_error_code(std::errc::invalid_argument), path);
    } while (count == piece.size());
    return content;
}

}  // namespace

std::string DiskProfileFile::GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                                      std::size_t length, const std::string& path) const
{
    try {
        const std::size_t limit = std::max<std::size_t>(length, 1) - 1;
        return FindProfileValue(ReadAll(Open(path, O_RDONLY), path), section, key, limit);
    } catch (const std::exception&) {
        return {};
    }
}

void DiskProfileFile::WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                                 const std::string& value, const std::string& path)
{
    try {
        FileDescriptor file = OpenAndLock(path, O_RDWR, lockWait_);
        Replacement::RemoveLeftover(path);
        const std::string text = ReadAll(file, path);
        const std::string changed = WithProfileEntry(text, {section, key, value});
        if (changed == text)
            return;
        Replacement replacement(path, file);
        replacement.Write(changed);
        replacement.Commit();
    } catch (const std::exception&) {
        // Nobody looks at the outcome of a profile write; the file is as it was.
    }
}

}  // namespace platform::files
