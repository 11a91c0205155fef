#pragma once

#include <functional>
#include <string>

#include "platform/posix/file_descriptor.h"

namespace player {

/// Where the report goes: a file or standard output.
class ReportFile {
public:
    /// "-" is standard output. What the file holds stays for now. Failure: UsageError where it cannot be opened.
    explicit ReportFile(const std::string& path);

    /// From here on a file has no earlier report any more.
    void Clear();

    /// Waits for a slow reader while `goesOn`, which is asked ten times a second. False where the report is not written
    /// as a whole.
    [[nodiscard]] bool Write(const std::string& report, const std::function<bool()>& goesOn);

private:
    platform::FileDescriptor file_;  // closed for standard output
};

}  // namespace player
