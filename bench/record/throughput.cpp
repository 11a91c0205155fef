// How many bytes a second record_feed keeps, beside socat, which keeps them as they come.
//   record_throughput RECORD_FEED MEGABYTES ROUNDS
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "record/processes.h"
#include "support/temporary_folder.h"

namespace {

using std::chrono::duration;
using std::chrono::steady_clock;

constexpr std::uint16_t kPort = 5015;
constexpr std::size_t kRecordSize = 240;
constexpr std::size_t kRecordsASend = 200;

struct Figures {
    double megabytesASecond = 0;
    std::size_t memoryAtFirst = 0;  // after a tenth of all records
    std::size_t memoryAtLast = 0;
};

/// How long the recording's lines are, for refs from 1 on.
std::uintmax_t RecordingSize(std::size_t records)
{
    const std::string around = ",2026-05-14T15:07:09,2026-05-14T15:07:09.250,\"\"\n";
    std::uintmax_t size = std::string("ref,timestamp,datetimestamp,rawtransaction\n").size();
    for (std::size_t ref = 1; ref <= records; ++ref)
        size += std::to_string(ref).size() + around.size() + kRecordSize;
    return size;
}

void WaitForSize(const std::string& path, std::uintmax_t size)
{
    while (!std::filesystem::exists(path) || std::filesystem::file_size(path) < size)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

Figures Measure(const std::vector<std::string>& command, const std::string& path, std::size_t sends,
                std::uintmax_t size)
{
    std::string records;
    for (std::size_t i = 0; i < kRecordsASend; ++i)
        records += std::string(kRecordSize - 1, 'x') + "\n";
    const bench::Process process(command);
    const auto socket = bench::ConnectTo(kPort);
    Figures figures;
    const auto begin = steady_clock::now();
    for (std::size_t send = 0; send < sends; ++send) {
        bench::SendAll(socket, records);
        if (send == sends / 10)
            figures.memoryAtFirst = process.ResidentBytes();
    }
    WaitForSize(path, size);
    const duration<double> taken = steady_clock::now() - begin;
    figures.memoryAtLast = process.ResidentBytes();
    figures.megabytesASecond = static_cast<double>(sends * records.size()) / taken.count() / 1e6;
    std::filesystem::remove(path);
    return figures;
}

void Print(const char* name, const Figures& figures)
{
    constexpr double kMebibyte = 1 << 20;
    std::printf("%-12s %8.0f MB/s %10.0f records/s   memory %.1f to %.1f MiB\n", name,
                figures.megabytesASecond, figures.megabytesASecond * 1e6 / kRecordSize,
                static_cast<double>(figures.memoryAtFirst) / kMebibyte,
                static_cast<double>(figures.memoryAtLast) / kMebibyte);
}

}  // namespace

int main(int count, char** words)
{
    if (count != 4)
        return 2;
    const std::size_t sends = std::strtoul(words[2], nullptr, 10) * 1'000'000 / (kRecordSize * kRecordsASend);
    const std::size_t records = sends * kRecordsASend;
    const TemporaryFolder folder;
    const std::string path = folder.Path("received");
    const std::string port = std::to_string(kPort);
    for (int round = std::atoi(words[3]); round > 0; --round) {
        const Figures bare = Measure({"socat", "-u", "TCP-LISTEN:" + port + ",reuseaddr", "CREATE:" + path},
                                     path, sends, records * kRecordSize);
        Print("socat", bare);
        const Figures ours = Measure({words[1], "--port", port, "--ends-with", "\\n", "--quiet", path}, path,
                                     sends, RecordingSize(records));
        Print("record_feed", ours);
        std::printf("%-12s %8.2f\n", "ratio", ours.megabytesASecond / bare.megabytesASecond);
    }
    return 0;
}
