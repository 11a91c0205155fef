#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace platform {

/// A text file that is open and locked: as long as this object lives, no Append to the file by any program of
/// this kind happens, and none is lost when the content is replaced.
///
/// Lines:     bytes, in the encoding of the file, up to CR LF, to LF, or to the end of the file for a last
///            line without either; a CR elsewhere is part of its line. An empty file has no line.
/// Failure:   kPermissionDenied, kPathFileAccess, kDiskFull; the content is then as it was.
class LockedTextFile {
public:
    virtual ~LockedTextFile() = default;

    [[nodiscard]] virtual std::int64_t CountLines() const = 0;

    /// Replaces the content, in one step, by the lines for which `keep` answers true, in their order, each
    /// followed by CR LF. `keep` is called once for every line with its number, counted from 1, and its text,
    /// which lives for that call only (of a line longer than 64 KiB perhaps only the beginning). What it
    /// throws passes through.
    virtual void KeepLines(const std::function<bool(std::int64_t number, std::string_view line)>& keep) = 0;
};

}  // namespace platform
