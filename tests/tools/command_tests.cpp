#include <gtest/gtest.h>

#include <stdexcept>

#include "command_line/command.h"

namespace {

struct Outcome {
    int status = 0;
    std::string output;
    std::string errors;
};

/// Runs a command with one option, one flag and one operand.
Outcome TryIt(std::vector<const char*> words, const std::function<int(int number)>& work)
{
    int number = 0;
    std::string operand;
    tools::Command command(
        "try_it",
        "Tries it.\n\nA paragraph is one line, however long it is, and stands here in lines of their own.");
    command.footer("The end:\n  stays   as it is");
    command
        .add_option("--number", number,
                    "a number that needs more words to describe than there is room for in a line")
        ->check(CLI::Range(1, 9))
        ->type_name("N")
        ->group("Numbers");
    bool flag = false;
    command.add_flag("--longer-than-the-column-is", flag, "told in the line below");
    command.add_option("OPERAND", operand, "what it is tried on")->required();
    words.insert(words.begin(), "path/to/try_it");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Outcome outcome;
    outcome.status = command.Run(static_cast<int>(words.size()), words.data(), [&] { return work(number); });
    outcome.errors = testing::internal::GetCapturedStderr();
    outcome.output = testing::internal::GetCapturedStdout();
    return outcome;
}

TEST(CommandTest, ShowsHelpInTheFormThatManPageAndCompletionAreMadeOf)
{
    const Outcome outcome = TryIt({"--help"}, [](int) { return 5; });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output,
              "Usage: try_it [OPTION]... OPERAND\n"
              "\n"
              "Tries it.\n"
              "\n"
              "A paragraph is one line, however long it is, and stands here in lines of their\n"
              "own.\n"
              "\n"
              "Operands:\n"
              "  OPERAND                   what it is tried on\n"
              "\n"
              "Numbers:\n"
              "  --number N                a number that needs more words to describe than\n"
              "                            there is room for in a line\n"
              "\n"
              "Options:\n"
              "  --longer-than-the-column-is\n"
              "                            told in the line below\n"
              "  --help                    show this text\n"
              "  --version                 show name and version\n"
              "\n"
              "The end:\n"
              "  stays   as it is\n");
}

TEST(CommandTest, EndsWithAStatusAndTellsFailuresInOneLine)
{
    const auto work = [](int number) {
        switch (number) {
            case 2:
                throw std::runtime_error("broken");
            case 3:
                throw CLI::ValidationError("settings", "too old");
            default:
                return 10 + number;
        }
    };
    const std::string usage = "; try_it --help shows the usage\n";
    const struct {
        std::vector<const char*> words;
        int status;
        std::string errors;
    } cases[] = {
        {{"x"}, 10, ""},
        {{"--number", "1", "x", "--number=4"}, 14, ""},
        {{"--number", "2", "x"}, 1, "try_it: broken\n"},
        {{"--number", "3", "x"}, 2, "try_it: settings: too old\n"},
        {{"--number", "10", "x"}, 2, "try_it: --number: Value 10 not in range 1 to 9" + usage},
        {{"--number", "x", "x"}, 2, "try_it: --number: Value x not in range 1 to 9" + usage},
        {{}, 2, "try_it: OPERAND is required" + usage},
        {{"x", "--num"}, 2, "try_it: The following argument was not expected: --num" + usage},
    };
    for (const auto& [words, status, errors] : cases) {
        const Outcome outcome = TryIt(words, work);
        EXPECT_EQ(outcome.status, status) << errors;
        EXPECT_EQ(outcome.errors, errors);
        EXPECT_EQ(outcome.output, "");
    }
}

}  // namespace
