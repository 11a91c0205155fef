#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "platform/posix/standard_error.h"

namespace record {

/// What the program says, on standard error. What a terminal that was stopped or a pipe that nobody reads does not
/// take is dropped, so that nothing waits for it. On a terminal the progress has a line that is written anew; it goes
/// with this object.
class Console {
public:
    enum class Loudness { kQuiet, kUsual };

    explicit Console(Loudness loudness);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// One line, with the program's name in front. A reader may be given so long to take it.
    void Say(std::string_view message, std::chrono::milliseconds patience = {});

    /// Shows the text in place of the last one that was shown so, on a terminal alone. It is cut to fit a line.
    void ShowProgress(std::string_view text);

    /// True when ShowProgress shows anything.
    [[nodiscard]] bool ShowsProgress() const { return showsProgress_; }

private:
    [[nodiscard]] std::string ErasedProgress();

    platform::posix::StandardError output_;
    bool isQuiet_;
    bool showsProgress_;
    bool progressIsThere_ = false;
};

}  // namespace record
