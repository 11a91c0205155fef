#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <string>

namespace tools {

/// What the exit status of every command says. A command may have further ones of its own.
constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

/// A command that takes its options in the manner of all of ours. The options and operands are added as CLI11's.
///
/// - `--help` shows usage, description, operands, the groups of options, and the footer; `--version` the name and the
///   version. Man page and completion are made of this text: a line that ends with a colon is a heading there.
/// - All texts are wrapped here, so that a paragraph is one line. Lines that begin with a blank stay as they are.
/// - An option shows its `option_text` as the name of its value, or else its `type_name` up to the colon behind which
///   CLI11 tells the checks.
/// - An option given twice counts as the last one says.
class Command : public CLI::App {
public:
    /// The description's first paragraph is one sentence; the man page has it beside the name.
    Command(const std::string& name, const std::string& description);

    /// Reads the words of the command line. Returns nothing when the command is to do its work, else its exit status:
    /// 0 after a text that was asked for, 2 for wrong usage, told in one line.
    [[nodiscard]] std::optional<int> Read(int count, const char* const* words);

    /// Reads the words, does the work and returns the exit status: Read's or the work's. An exception of the work is
    /// told in one line and gives 1, or 2 if it is CLI11's, by which work says that its arguments are wrong.
    [[nodiscard]] int Run(int count, const char* const* words, const std::function<int()>& work);

private:
    void Tell(const std::string& problem) const;
};

}  // namespace tools
