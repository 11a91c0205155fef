#pragma once

#include <string>

#include "platform/posix/file_descriptor.h"

namespace player {

/// Where the report goes: a file, which is empty from the beginning on until the report is there, or standard output.
class ReportFile {
public:
    /// "-" is standard output. Failure: UsageError where the file cannot be opened.
    explicit ReportFile(const std::string& path);

    /// False where it cannot be written as a whole.
    [[nodiscard]] bool Write(const std::string& report);

private:
    platform::FileDescriptor file_;  // closed for standard output
};

}  // namespace player
