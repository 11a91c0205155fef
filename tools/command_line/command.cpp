#include "command_line/command.h"

#include <cstdio>
#include <memory>
#include <sstream>

#include "platform/failure.h"

namespace tools {
namespace {

constexpr std::size_t kLineLength = 80;
constexpr std::size_t kDescriptionColumn = 28;
constexpr const char* kOperands = "Operands";

/// The words of a text in lines of a length, each but the first behind an indentation.
std::string Wrapped(const std::string& text, std::size_t indentation, std::size_t length)
{
    std::string lines;
    std::size_t used = 0;
    std::istringstream words(text);
    for (std::string word; words >> word; used += word.size()) {
        if (used > 0 && used + 1 + word.size() > length) {
            lines += "\n" + std::string(indentation, ' ');
            used = 0;
        } else if (used > 0) {
            lines += ' ';
            ++used;
        }
        lines += word;
    }
    return lines;
}

/// Each line of a text wrapped by itself, but those that begin with a blank.
std::string WrappedLines(const std::string& text)
{
    std::string lines;
    std::istringstream given(text);
    for (std::string line; std::getline(given, line);)
        lines += (line.starts_with(' ') ? line : Wrapped(line, 0, kLineLength)) + "\n";
    return lines;
}

/// The text of --help. Two blanks stand before each description: man page and completion find it by them.
class HelpText : public CLI::Formatter {
public:
    std::string make_help(const CLI::App* command, std::string name,
                          CLI::AppFormatMode /*mode*/) const override
    {
        std::string help =
            make_usage(command, std::move(name)) + "\n" + WrappedLines(command->get_description());
        help += make_positionals(command);
        for (const std::string& group : command->get_groups()) {
            if (const auto options = OptionsOf(command, group); !options.empty())
                help += make_group(group, false, options);
        }
        const std::string footer = WrappedLines(command->get_footer());
        return help + (footer.empty() ? "" : "\n" + footer);
    }

    std::string make_usage(const CLI::App* command, std::string name) const override
    {
        std::string usage = "Usage: " + name + " [OPTION]...";
        for (const CLI::Option* operand :
             command->get_options([](auto* option) { return option->get_positional(); }))
            usage += " " + make_option_usage(operand);
        return usage + "\n";
    }

    std::string make_option(const CLI::Option* option, bool isOperand) const override
    {
        std::string names =
            "  " + make_option_name(option, isOperand) + (isOperand ? "" : make_option_opts(option));
        if (names.size() + 2 > kDescriptionColumn)
            names += "\n";
        const std::size_t used = names.ends_with('\n') ? 0 : names.size();
        return names + std::string(kDescriptionColumn - used, ' ') +
               Wrapped(option->get_description(), kDescriptionColumn, kLineLength - kDescriptionColumn) +
               "\n";
    }

    std::string make_option_opts(const CLI::Option* option) const override
    {
        const std::string& text = option->get_option_text();
        const std::string type = option->get_type_name();
        const std::string value = text.empty() ? type.substr(0, type.find(':')) : text;
        return option->get_type_size() == 0 || value.empty() ? "" : " " + value;
    }

private:
    static std::vector<const CLI::Option*> OptionsOf(const CLI::App* command, const std::string& group)
    {
        return command->get_options([&group](const CLI::Option* option) {
            return option->get_group() == group && option->nonpositional();
        });
    }
};

}  // namespace

Command::Command(const std::string& name, const std::string& description) : App(description, name)
{
    formatter(std::make_shared<HelpText>());
    get_formatter()->label("Positionals", kOperands);
    option_defaults()->take_last();
}

std::optional<int> Command::Read(int count, const char* const* words)
{
    for (CLI::Option* operand :
         get_options([](const CLI::Option* option) { return option->get_positional(); }))
        operand->group(kOperands);
    set_help_flag("--help", "show this text");
    set_version_flag("--version", get_name() + " " + TRELLIVAN_VERSION, "show name and version");
    try {
        parse(count, words);
        return {};
    } catch (const CLI::Success& request) {
        exit(request);
        return std::cout.flush() ? kDone : kFailed;
    } catch (const CLI::ParseError& error) {
        Tell(std::string(error.what()) + "; " + get_name() + " --help shows the usage");
        return kWrongUsage;
    }
}

int Command::Run(int count, const char* const* words, const std::function<int()>& work)
{
    try {
        const std::optional<int> ended = Read(count, words);
        return ended ? *ended : work();
    } catch (const CLI::Error& error) {
        Tell(error.what());
        return kWrongUsage;
    } catch (...) {
        Tell(platform::CurrentFailure().Description());
        return kFailed;
    }
}

void Command::Tell(const std::string& problem) const
{
    std::fputs((get_name() + ": " + problem + "\n").c_str(), stderr);
}

}  // namespace tools
