#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "platform/date_time.h"

namespace platform {

/// What went wrong in a procedure. Texts are UTF-8.
struct ErrorRecord {
    std::string number;       ///< in decimal; "0" where what is recorded was no failure
    std::string description;  ///< one sentence, or empty
    std::string procedure;    ///< its dotted name, for example "frmConnect.cmdPlayPause"
};

/// The cutoff that stands for no age limit, like every earlier one.
inline constexpr DateTime kNoLogAgeLimit =
    std::chrono::local_days{std::chrono::year{1980} / std::chrono::January / 1};

/// Takes the error records. In the window they go into a file; another program may do with them what it wants.
///
/// Path: of the log, as the program gave it to the logic. A log that is no file has no use for it.
class ErrorLog {
public:
    virtual ~ErrorLog() = default;

    /// Takes one record of what has just gone wrong. Failure: any. The logic lets it go and the record is lost,
    /// because there is no other place to report it.
    virtual void Write(const std::string& path, const ErrorRecord& record) = 0;

    /// Called once, at start, before the first record: drops what is too much, by number unless the line limit is
    /// negative, and what is too old, unless the cutoff is kNoLogAgeLimit or earlier. Never fails.
    virtual void Trim(const std::string& path, std::int32_t lineLimit, DateTime ageCutoff) = 0;
};

}  // namespace platform
