#pragma once

#include <string>
#include <string_view>

namespace record {

/// What the program says, on standard error. Nothing here fails or waits: what a terminal that was stopped, a
/// pipe that nobody reads or a closed descriptor does not take is dropped.
class Console {
public:
    enum class Loudness { kQuiet, kUsual };

    explicit Console(Loudness loudness);
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// One line, with the program's name in front.
    void Say(std::string_view message);

    /// The same, also where the console is quiet: why the program ends.
    void SayInAnyCase(std::string_view message);

    /// Shows the text in place of the last one that was shown so, on a terminal alone. It is cut to fit a line.
    void ShowProgress(std::string_view text);

    /// True when ShowProgress shows anything.
    [[nodiscard]] bool ShowsProgress() const { return showsProgress_; }

private:
    bool isQuiet_;
    bool showsProgress_;
    bool progressIsThere_ = false;
};

}  // namespace record
