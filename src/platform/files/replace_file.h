#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// Replaces the content of a file in one step: the new content goes into a new file beside the old one, is flushed to
/// the disk, and the new file is moved over the old one. When the program is killed on the way, or the disk is full, the
/// file has its old content or its new one. Permissions and symbolic links to the file stay, and so do owner and group
/// where the system allows it.
///
/// Where the file system can do that, the new file has no name until it is complete. Otherwise, and for the moment before
/// the move, its name is "." + name + ".new". A program that is killed then leaves it there. It would be in the way of
/// the next replacement, so whoever has locked the file removes it first.
///
/// Where no new file can be made or moved (the folder is closed to writing, the file is a mount of its own), the old
/// content is written over, once the new one is complete and the disk has room for it. This way alone is not one step: a
/// program that is killed in the middle of it leaves a part of each.
///
/// Failure:   when the system refuses a step (kDiskFull, for one). The file is then as it was.
class Replacement {
public:
    /// Removes what a killed program left beside the file at `path`, which the caller has locked.
    static void RemoveLeftover(const std::string& path);

    /// Borrows `file`, which is what stands at `path`, opened by OpenAndLock for reading and writing.
    Replacement(const std::string& path, FileDescriptor& file);
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// Adds bytes to the new content. `file` can be read meanwhile.
    void Write(std::string_view bytes);

    /// Makes the bytes written the content. `file` is then the new file, and no moment passes in which neither is locked.
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
