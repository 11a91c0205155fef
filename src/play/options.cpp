#include "play/options.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

#include "command_line/command.h"
#include "command_line/numbers.h"
#include "play/usage_error.h"

namespace player {
namespace {

constexpr double kLongestTime = 1e9;  // seconds
constexpr std::int64_t kMostTills = 1'000'000;
constexpr std::int64_t kMostLoops = 1'000'000'000;

constexpr const char* kDescription =
    "Plays the feed of Trellivan without a window.\n"
    "\n"
    "It sends the records of a database to a receiver, one after the other, and tells how well they were "
    "played. "
    "Without SETTINGS the window's built-in settings count if a database is named, else Config.ini beside "
    "the "
    "program.";

constexpr const char* kStatuses =
    "Exit status:\n"
    "  0    every record was handed over\n"
    "  1    something was not, and the report says what\n"
    "  2    wrong usage or settings, nothing was sent\n"
    "  130  interrupted by SIGINT\n"
    "  143  interrupted by SIGTERM\n";

std::chrono::milliseconds Milliseconds(double seconds)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

std::optional<std::int64_t> WholeNumber(std::string_view text)
{
    std::int64_t number = 0;
    const auto read = std::from_chars(text.begin(), text.end(), number);
    return read.ec == std::errc() && read.ptr == text.end() ? std::optional(number) : std::nullopt;
}

Shard ShardFrom(const std::string& text)
{
    const std::size_t slash = text.find('/');
    const std::string_view view = text;
    const auto number = WholeNumber(view.substr(0, slash));
    const auto of = slash == std::string::npos ? std::nullopt : WholeNumber(view.substr(slash + 1));
    if (!number || !of || *number < 1 || *number > *of || *of > kMostTills)
        throw UsageError("--shard: \"" + text + "\" is not K/N with K from 1 to N and N to 1000000");
    return {*number, *of};
}

/// The command line as it is read, before its parts are put together.
class CommandLine {
public:
    CommandLine();

    std::variant<Options, int> Read(int argumentCount, const char* const* arguments);

private:
    void AddSettings();
    void AddSelection();
    void AddRhythm();
    void AddShop();
    void AddOutput();
    void AddOverride(const char* option, const char* section, const char* key, const std::string& value,
                     const char* help);
    [[nodiscard]] Options Checked();

    tools::Command app_{"play_feed", kDescription};
    Options options_;
    std::optional<std::string> database_;
    std::int64_t loops_ = 1;
    bool recorded_ = false;
    std::optional<double> speed_;
    std::optional<double> longestGap_;
    double wait_ = 10;
    std::string shard_ = "1/1";
};

CommandLine::CommandLine()
{
    app_.footer(kStatuses);
    AddSettings();
    AddSelection();
    AddRhythm();
    AddShop();
    AddOutput();
}

void CommandLine::AddOverride(const char* option, const char* section, const char* key,
                              const std::string& value, const char* help)
{
    const auto put = [this, section, key](const std::string& text) {
        options_.overrides.push_back({section, key, text});
    };
    app_.add_option_function<std::string>(option, put, help)->option_text(value)->group("Settings");
}

void CommandLine::AddSettings()
{
    app_.add_option("SETTINGS", options_.settings, "files in the form of Config.ini, one till for each");
    app_.add_option("--database", database_, "the records: an mdb or sdd file")
        ->option_text("FILE")
        ->group("Settings");
    AddOverride("--address", keys::kConnection, keys::kAddress, "HOST", "the receiver, or a multicast group");
    AddOverride("--port", keys::kConnection, keys::kPort, "N", "its port, or the one to listen on");
    AddOverride("--protocol", keys::kConnection, keys::kProtocol, trellivan::ProtocolNames("|"),
                "how to send");
    AddOverride("--role", keys::kConnection, keys::kRole, "Connect|Listen",
                "call the receiver, or wait for it to call");
    AddOverride("--interval", keys::kTimer, keys::kInterval, "MS", "from one record to the next");
    AddOverride("--reconnect", keys::kConnection, keys::kReconnect, "yes|no",
                "go on after a lost connection");
    app_.add_flag("--transfer-time", options_.transferTime, "send the recorded time behind each record")
        ->group("Settings");
}

void CommandLine::AddSelection()
{
    app_.add_option("--from", options_.range.from, "begin with the first record whose ref is not less")
        ->option_text("REF")
        ->group("Records");
    app_.add_option("--to", options_.range.to, "end with the last record whose ref is not greater")
        ->option_text("REF")
        ->group("Records");
    app_.add_option("--loop", loops_, "play so many times over one connection; 0: until interrupted")
        ->option_text("N")
        ->check(tools::WholeNumberIn(0, kMostLoops))
        ->group("Records");
}

void CommandLine::AddRhythm()
{
    CLI::Option* const recorded =
        app_.add_flag("--recorded", recorded_, "in the rhythm of the recording")->group("Rhythm");
    app_.add_option("--speed", speed_, "with --recorded: so many times as fast")
        ->option_text("X")
        ->check(tools::NumberIn(1e-6, 1e9))
        ->needs(recorded)
        ->group("Rhythm");
    app_.add_option("--longest-gap", longestGap_,
                    "with --recorded: shorten longer pauses of the feed to this")
        ->option_text("SECONDS")
        ->check(tools::NumberIn(0, kLongestTime))
        ->needs(recorded)
        ->group("Rhythm");
    app_.add_flag("--unpaced", options_.unpaced, "as fast as the receiver takes the records")
        ->excludes(recorded)
        ->group("Rhythm");
    app_.add_option("--wait", wait_, "for the receiver, at the beginning and after a lost connection (10)")
        ->option_text("SECONDS")
        ->check(tools::NumberIn(0, kLongestTime))
        ->group("Rhythm");
}

void CommandLine::AddShop()
{
    app_.add_option("--tills", options_.tills, "so many tills of each settings file (1)")
        ->option_text("N")
        ->check(tools::WholeNumberIn(1, kMostTills))
        ->group("Shop");
    app_.add_option("--port-step", options_.portStep,
                    "each further till on the same port gets one so much higher (0)")
        ->option_text("N")
        ->check(tools::WholeNumberIn(0, 65534))
        ->group("Shop");
    app_.add_flag("--together", options_.together,
                  "all tills tick at the same moments, instead of spread over the interval")
        ->group("Shop");
    app_.add_option("--shard", shard_, "play only the K-th of N parts of the tills")
        ->option_text("K/N")
        ->group("Shop");
}

void CommandLine::AddOutput()
{
    app_.add_option("--report", options_.report, "write the report as JSON; - is standard output")
        ->option_text("FILE")
        ->group("Output");
    app_.add_flag("--status", options_.status, "print status lines and errors")->group("Output");
    app_.add_flag("--quiet", options_.quiet, "neither progress nor summary")->group("Output");
    app_.add_option("--locale", options_.locale, "regional formats, such as de_DE (the user's)")
        ->option_text("NAME")
        ->group("Output");
}

std::variant<Options, int> CommandLine::Read(int argumentCount, const char* const* arguments)
{
    if (const auto status = app_.Read(argumentCount, arguments))
        return *status;
    return Checked();
}

Options CommandLine::Checked()
{
    const bool isEmpty = std::ranges::any_of(options_.overrides, &std::string::empty, &Override::value) ||
                         std::ranges::any_of(options_.settings, &std::string::empty) || database_ == "";
    if (isEmpty)
        throw UsageError("A file or a value of the settings on the command line is empty");
    if (database_) {
        options_.overrides.push_back(
            {keys::kDatabase, keys::kFilePath, std::filesystem::absolute(*database_).string()});
        options_.namesDatabase = true;
    }
    options_.loops = loops_ == 0 ? std::nullopt : std::optional(loops_);
    options_.wait = Milliseconds(wait_);
    options_.shard = ShardFrom(shard_);
    if (recorded_) {
        options_.recorded.emplace();
        options_.recorded->speed = speed_.value_or(1);
        if (longestGap_)
            options_.recorded->longestGap = Milliseconds(*longestGap_);
    }
    return options_;
}

}  // namespace

std::variant<Options, int> ParseOptions(int argumentCount, const char* const* arguments)
{
    return CommandLine().Read(argumentCount, arguments);
}

}  // namespace player
