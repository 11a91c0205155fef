#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// The replacement of a file's content in one step: a new file is written beside it, flushed to the disk, and
/// moved over it. Whenever the program ends on the way, or the disk fills up, the file has its old content or
/// its new one. Permissions, symbolic links to the file and, where the system allows it, its owner and group
/// are kept.
///
/// The new file has no name until it is complete, where the file system can do that; otherwise, and for the
/// moment before the move, it is "." + name + ".new". A program killed then leaves it there; it is in the way
/// of the next replacement, so whoever has locked the file removes it first.
///
/// Where no new file can be made or moved (the folder is closed to writing, the file is a mount of its own),
/// the content is written over the old one, once it is complete and room for it is sure. That alone is not
/// one step: a program killed in the middle of it leaves a mixture.
///
/// Failure:   any step that the system refuses, kDiskFull among them; the file is then as it was.
class Replacement {
public:
    /// Removes what a killed program left beside the file at `path`, which the caller has locked.
    static void RemoveLeftover(const std::string& path);

    /// Borrows `file`, which is what stands at `path`, open for reading and writing, and locked. A file that
    /// is no regular one is refused (kPathFileAccess).
    Replacement(const std::string& path, FileDescriptor& file);
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// Adds bytes to the new content. `file` can be read meanwhile.
    void Write(std::string_view bytes);

    /// Makes the bytes written the content. `file` is then the new file, and locked without a gap.
    void Commit();

private:
    void OpenNewFile();
    void Flush();
    [[nodiscard]] bool MoveOverFile();
    void CopyOverFile();

    std::string target_;
    std::string temporary_;
    FileDescriptor& file_;
    FileDescriptor newFile_;
    bool beside_ = true;  // the new file lies in the old one's folder, not in memory
    bool named_ = false;  // it has its temporary name, and is removed unless it is moved
    std::string buffer_;
    std::int64_t written_ = 0;
};

}  // namespace platform::files
