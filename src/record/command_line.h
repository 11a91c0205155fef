#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "record/record_cutter.h"
#include "record/recording_file.h"

namespace record {

/// Where the feed comes from.
enum class Origin {
    kTcpListen,   ///< a till connects
    kTcpConnect,  ///< a till that is connected to
    kUdpListen,   ///< datagrams to a port
    kUdpConnect,  ///< datagrams of a till that waits for a hello
    kGroup,       ///< a multicast group
    kStandardInput,
};

struct HostAndPort {
    std::string host;
    std::uint16_t port = 0;
};

/// What the command line asks for, checked as far as that goes without trying.
struct Options {
    std::string file;
    OnExisting onExisting = OnExisting::kRefuse;
    Origin origin = Origin::kTcpListen;
    HostAndPort
        at;  ///< the till, the group, or where to wait: an empty host is every address of this machine
    CutRule rule;
    std::optional<HostAndPort> forward;
    std::optional<std::uint64_t> records;
    std::optional<std::chrono::milliseconds> duration;
    std::string locale;  ///< empty for the user's
    bool quiet = false;
};

/// The words of a command line as options. `work` gets them and returns the exit status: this function's as well,
/// which is 0 after help or version and 2 after one line about a command that makes no sense. So it is where `work`
/// throws WrongUsage; 1 for other exceptions.
[[nodiscard]] int RunCommandLine(int count, const char* const* words,
                                 const std::function<int(const Options&)>& work);

/// The bytes that a typed text stands for: its characters in code page 1252, and for \n \r \t \\ and \xHH the
/// byte that each names. WrongUsage for another sequence and for a character that the code page lacks.
[[nodiscard]] std::string TypedBytes(std::string_view text);

}  // namespace record
