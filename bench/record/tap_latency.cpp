// How much later a receiver gets a record through the tap of record_feed than without it.
//   record_tap_latency RECORD_FEED SECONDS ROUNDS
#include <sys/socket.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "record/processes.h"
#include "replay/percentile.h"
#include "support/temporary_folder.h"

namespace {

using platform::FileDescriptor;
using std::chrono::steady_clock;

constexpr std::uint16_t kPort = 5015;
constexpr std::size_t kRecordSize = 240;
constexpr std::chrono::milliseconds kInterval{1};

/// A record whose first bytes tell when it was sent.
std::string Record()
{
    const auto now = steady_clock::now().time_since_epoch().count();
    std::string record(kRecordSize - 1, 'x');
    std::snprintf(record.data(), record.size(), "%lld", static_cast<long long>(now));
    return record + "\n";
}

/// Receives so many records and says how long each was on its way, in milliseconds.
std::vector<double> Receive(const FileDescriptor& socket, std::size_t records)
{
    std::vector<double> latencies;
    std::string bytes(kRecordSize, '\0');
    while (latencies.size() < records && ::recv(socket.Number(), bytes.data(), bytes.size(), MSG_WAITALL) ==
                                             static_cast<ssize_t>(bytes.size())) {
        const auto now = steady_clock::now().time_since_epoch();
        const std::chrono::nanoseconds sent(std::atoll(bytes.c_str()));
        latencies.push_back(std::chrono::duration<double, std::milli>(now - sent).count());
    }
    return latencies;
}

std::vector<double> Measure(const FileDescriptor& sender, const FileDescriptor& listening,
                            std::size_t records)
{
    const FileDescriptor receiver(::accept(listening.Number(), nullptr, nullptr));
    std::vector<double> latencies;
    std::thread receiving([&] { latencies = Receive(receiver, records); });
    auto next = steady_clock::now();
    for (std::size_t i = 0; i < records; ++i) {
        bench::SendAll(sender, Record());
        std::this_thread::sleep_until(next += kInterval);
    }
    receiving.join();
    return latencies;
}

void Print(const char* name, const std::vector<double>& latencies)
{
    std::printf("%-16s %6zu records   p50 %.3f   p99 %.3f   p99.9 %.3f   max %.3f ms\n", name,
                latencies.size(), bench::Percentile(latencies, 0.5), bench::Percentile(latencies, 0.99),
                bench::Percentile(latencies, 0.999), bench::Percentile(latencies, 1));
}

}  // namespace

int main(int count, char** words)
{
    if (count != 4)
        return 2;
    const std::size_t records = std::strtoul(words[2], nullptr, 10) * 1000;
    for (int round = std::atoi(words[3]); round > 0; --round) {
        std::uint16_t port = 0;
        const FileDescriptor listening = bench::Listen(port);
        const auto bare = Measure(bench::ConnectTo(port), listening, records);
        Print("without", bare);
        const TemporaryFolder folder;
        const bench::Process recorder({words[1], "--port", std::to_string(kPort), "--ends-with", "\\n",
                                       "--quiet", "--forward", "127.0.0.1:" + std::to_string(port),
                                       folder.Path("day.csv")});
        const auto tapped = Measure(bench::ConnectTo(kPort), listening, records);
        Print("through the tap", tapped);
        std::printf("%-16s p99 %+.3f ms\n", "added",
                    bench::Percentile(tapped, 0.99) - bench::Percentile(bare, 0.99));
    }
    return 0;
}
