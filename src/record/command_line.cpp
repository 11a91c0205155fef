#include "record/command_line.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "command_line/command.h"
#include "command_line/numbers.h"
#include "platform/ansi_code_page.h"

namespace record {
namespace {

enum class Protocol { kTcp, kUdp, kGroup };
enum class Role { kListen, kConnect };

constexpr std::int64_t kLongestGap = 86'400'000;                                 // a day, in milliseconds
constexpr double kLongestDuration = 366.0 * 86'400;                              // a year, in seconds
constexpr std::int64_t kMostRecords = std::numeric_limits<std::int32_t>::max();  // that have a ref
constexpr std::chrono::milliseconds kUsualGap{250};

/// The options as they were typed, before they are held against one another.
struct Typed {
    std::string file;
    Protocol protocol = Protocol::kTcp;
    Role role = Role::kListen;
    std::string address;
    std::optional<std::uint16_t> port;
    bool standardInput = false;
    std::optional<std::int64_t> gap;
    std::string endsWith;
    bool transferTime = false;
    std::string locale;
    std::string forward;
    std::optional<std::uint64_t> records;
    std::optional<double> seconds;
    bool append = false;
    bool quiet = false;
};

constexpr const char* kDescription =
    "Records a live feed of transactions as a CSV, of which make_database makes a database.";

constexpr const char* kFooter =
    "A record is a datagram; in a stream it ends with --ends-with, with --transfer-time, or else with a "
    "pause of "
    "--gap. With --gap beside one of the others it ends with whichever comes first.\n"
    "\n"
    "Exit status: 0 when the recording has ended as asked for, also by SIGINT or SIGTERM; 1 when something "
    "failed, "
    "such as a full disk; 2 for wrong usage. What was recorded is whole in each case.";

/// An option with names for values, in any case.
template <class Value>
CLI::Option* AddChoice(tools::Command& command, const char* name, Value& value,
                       const std::map<std::string, Value>& choices, const char* description)
{
    return command
        .add_option_function<std::string>(
            name, [&value, choices](const std::string& typed) { value = choices.at(typed); }, description)
        ->transform(CLI::IsMember(choices, CLI::ignore_case))
        ->option_text("NAME");
}

/// A script whose variable is empty does not mean "without the option".
CLI::Validator NotEmpty()
{
    return {[](const std::string& text) { return text.empty() ? "the text is empty" : ""; }, ""};
}

void AddSourceOptions(tools::Command& command, Typed& typed)
{
    auto* const protocol =
        AddChoice(command, "--protocol", typed.protocol,
                  {{"TCP", Protocol::kTcp}, {"UDP", Protocol::kUdp}, {"MCAST", Protocol::kGroup}},
                  "TCP (as without the option), UDP or MCAST");
    auto* const role =
        AddChoice(command, "--role", typed.role, {{"Listen", Role::kListen}, {"Connect", Role::kConnect}},
                  "Listen (as without the option): the till comes here; Connect: go to the till");
    auto* const address =
        command
            .add_option("--address", typed.address,
                        "the till to go to, the group to join, or with Listen the address of this "
                        "machine to wait at; without it that is any")
            ->option_text("HOST");
    auto* const port = command.add_option("--port", typed.port, "the port; with Listen 0 is any free one")
                           ->check(tools::WholeNumberIn(0, std::numeric_limits<std::uint16_t>::max()))
                           ->option_text("N");
    auto* const standardInput =
        command.add_flag("--stdin", typed.standardInput, "read standard input instead of a network");
    for (CLI::Option* const other : {protocol, role, address, port})
        standardInput->excludes(other);
}

void AddCuttingOptions(tools::Command& command, Typed& typed)
{
    command.add_option("--gap", typed.gap, "streams: a record ends when nothing has come for so long (250)")
        ->check(tools::WholeNumberIn(1, kLongestGap))
        ->option_text("MS");
    auto* const endsWith =
        command
            .add_option("--ends-with", typed.endsWith,
                        "streams: a record ends with this text, which belongs to it; \\n \\r \\t \\\\ \\xHH")
            ->check(NotEmpty())
            ->option_text("TEXT");
    command
        .add_flag("--transfer-time", typed.transferTime,
                  "a record ends with the byte 01, its time and the byte 02; the time becomes its timestamp, "
                  "the three "
                  "are not part of its text")
        ->excludes(endsWith);
    command
        .add_option(
            "--locale", typed.locale,
            "regional formats in which that time is written, like de_DE; without the option the user's")
        ->option_text("NAME");
}

void AddOtherOptions(tools::Command& command, Typed& typed)
{
    command
        .add_option("--forward", typed.forward,
                    "TCP: pass what comes on to this receiver at once, and its answers back to the till")
        ->check(NotEmpty())
        ->option_text("HOST:PORT");
    command.add_option("--records", typed.records, "end after so many records")
        ->check(tools::WholeNumberIn(1, kMostRecords))
        ->option_text("N");
    command.add_option("--seconds", typed.seconds, "end after so long")
        ->check(tools::NumberIn(0.001, kLongestDuration))
        ->option_text("S");
    command.add_flag("--append", typed.append, "go on in a recording; its ref counts on");
    command.add_flag("--quiet", typed.quiet, "no progress, messages and summary");
}

[[noreturn]] void Refuse(const std::string& reason)
{
    throw WrongUsage(reason);
}

std::optional<std::uint16_t> PortOf(std::string_view digits)
{
    std::uint16_t port = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, port);
    return error == std::errc() && stop == end && port > 0 ? std::optional(port) : std::nullopt;
}

/// An address of IPv6 may stand in brackets.
HostAndPort ToHostAndPort(const std::string& text)
{
    const std::size_t colon = text.rfind(':');
    const auto port =
        colon == std::string::npos ? std::nullopt : PortOf(std::string_view(text).substr(colon + 1));
    std::string host = text.substr(0, colon);
    if (host.starts_with('[') && host.ends_with(']'))
        host = host.substr(1, host.size() - 2);
    if (!port || host.empty())
        Refuse("--forward: \"" + text + "\" is no HOST:PORT");
    return {std::move(host), *port};
}

Origin OriginOf(const Typed& typed)
{
    if (typed.standardInput)
        return Origin::kStandardInput;
    if (typed.protocol == Protocol::kGroup)
        return Origin::kGroup;
    const bool listens = typed.role == Role::kListen;
    if (typed.protocol == Protocol::kTcp)
        return listens ? Origin::kTcpListen : Origin::kTcpConnect;
    return listens ? Origin::kUdpListen : Origin::kUdpConnect;
}

void CheckPlace(const Options& options, const Typed& typed)
{
    const bool waitsHere = options.origin == Origin::kTcpListen || options.origin == Origin::kUdpListen;
    if (options.origin == Origin::kStandardInput)
        return;
    if (!typed.port)
        Refuse("--port is missing");
    if (!waitsHere && typed.address.empty())
        Refuse(options.origin == Origin::kGroup ? "--address is missing: the group to join"
                                                : "--address is missing: the till to go to");
    if (!waitsHere && *typed.port == 0)
        Refuse("--port 0 is no port to go to");
}

void CheckStreamOptions(const Options& options, const Typed& typed)
{
    const bool isTcp = options.origin == Origin::kTcpListen || options.origin == Origin::kTcpConnect;
    const bool isStream = isTcp || options.origin == Origin::kStandardInput;
    if (!isTcp && !typed.forward.empty())
        Refuse("--forward is for TCP alone");
    if (!isStream && (typed.gap || !typed.endsWith.empty()))
        Refuse("--gap and --ends-with are for streams: a datagram is a record");
}

CutRule RuleOf(const Typed& typed)
{
    CutRule rule{.endsWith = TypedBytes(typed.endsWith), .transferTime = typed.transferTime};
    if (typed.gap)
        rule.gap = std::chrono::milliseconds(*typed.gap);
    else if (rule.endsWith.empty() && !rule.transferTime)
        rule.gap = kUsualGap;
    return rule;
}

Options Checked(const Typed& typed)
{
    Options options{.file = typed.file,
                    .onExisting = typed.append ? OnExisting::kGoOn : OnExisting::kRefuse,
                    .origin = OriginOf(typed),
                    .at = {typed.address, typed.port.value_or(0)},
                    .rule = RuleOf(typed),
                    .forward = {},
                    .records = typed.records,
                    .duration = {},
                    .locale = typed.locale,
                    .quiet = typed.quiet};
    if (!typed.forward.empty())
        options.forward = ToHostAndPort(typed.forward);
    if (typed.seconds)
        options.duration =
            std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(*typed.seconds));
    CheckPlace(options, typed);
    CheckStreamOptions(options, typed);
    return options;
}

/// The value of "HH"; nothing where those are no two hexadecimal digits.
std::optional<char> HexByte(std::string_view digits)
{
    unsigned value = 0;
    if (digits.size() < 2)
        return std::nullopt;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + 2, value, 16);
    return stop == digits.data() + 2 ? std::optional(static_cast<char>(value)) : std::nullopt;
}

/// Takes what stands behind a backslash.
char TakeEscaped(std::string_view& text)
{
    static constexpr std::string_view kNames = "nrt\\";
    static constexpr std::string_view kBytes = "\n\r\t\\";
    const std::size_t known = text.empty() ? std::string_view::npos : kNames.find(text.front());
    const auto byte = text.starts_with('x') ? HexByte(text.substr(1)) : std::nullopt;
    if (known == std::string_view::npos && !byte)
        Refuse("--ends-with: behind \\ stands n, r, t, \\ or x with two digits");
    text.remove_prefix(byte ? 3 : 1);
    return byte ? *byte : kBytes[known];
}

}  // namespace

std::string TypedBytes(std::string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        const char32_t character = platform::TakeCharacter(text);
        const auto code = platform::AnsiCode(character);
        if (!code)
            Refuse("--ends-with: a character that code page 1252 lacks; give its bytes as \\xHH");
        bytes += character == U'\\' ? TakeEscaped(text) : static_cast<char>(*code);
    }
    return bytes;
}

int RunCommandLine(int count, const char* const* words, const std::function<int(const Options&)>& work)
{
    Typed typed;
    tools::Command command("record_feed", kDescription);
    command.footer(kFooter);
    command.add_option("OUT.csv", typed.file, "the recording")->required();
    AddSourceOptions(command, typed);
    AddCuttingOptions(command, typed);
    AddOtherOptions(command, typed);
    return command.Run(count, words, [&] {
        try {
            return work(Checked(typed));
        } catch (const WrongUsage& wrong) {
            throw CLI::ValidationError(wrong.Description());
        }
    });
}

}  // namespace record
