#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "make_database/database_writer.h"
#include "play/senders.h"
#include "play/sink.h"
#include "support/temporary_folder.h"

/// Measures play_feed beside bare loops and prints the rows of docs/benchmarks.md. It judges nothing.
namespace {

using bench::Feed;
using bench::Run;
using bench::Sink;
using namespace std::chrono_literals;

constexpr int kRecords = 1000;  // in the database
constexpr const char* kDatabase = "--database feed.mdb --port 5015 ";

void MakeDatabase(const std::string& path)
{
    std::vector<tools::Receipt> receipts;
    for (int record = 0; record < kRecords; ++record) {
        const double time = 38423.5 + record / 86400.0;
        receipts.push_back({.ref = record + 1,
                            .rawtransaction = std::string(bench::kRecordBytes, 'x'),
                            .timestamp = time,
                            .datetimestamp = time});
    }
    const tools::Bytes bytes = tools::DatabaseBytes(receipts);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void Print(const std::string& sender, const Run& run)
{
    std::printf("| %s | %lld | %.0f | %.2f | %.1f %% | %.3f, %.3f, %.3f ms | %ld KB | %d |\n", sender.c_str(),
                static_cast<long long>(run.records), static_cast<double>(run.records) / run.elapsed,
                run.seconds * 1e6 / static_cast<double>(run.records), 100 * run.seconds / run.elapsed,
                run.p50, run.p99, run.greatest, run.kilobytes, run.status);
    std::fflush(stdout);
}

void Head(const char* what)
{
    std::printf(
        "\n%s\n\n| sender | records | a second | microseconds each | of a core | lateness p50, p99, max | "
        "resident | status |\n|---|---|---|---|---|---|---|---|\n",
        what);
}

void MeasureShop(const std::string& folder, const Feed& feed)
{
    const std::string name =
        std::to_string(feed.tills) + " tills, " + std::to_string(feed.interval.count()) + " ms";
    Print("bare, " + name, bench::RunBareTimers(feed));
    Print("play_feed, " + name,
          bench::RunPlayer(folder, kDatabase + std::string("--tills ") + std::to_string(feed.tills) +
                                       " --interval " + std::to_string(feed.interval.count()) + " --to " +
                                       std::to_string(feed.recordsEach)));
}

void MeasureUnpaced(const std::string& folder)
{
    Head("Unpaced");
    Print("bare", bench::RunBareSends(1'000'000));
    Print("play_feed", bench::RunPlayer(folder, kDatabase + std::string("--unpaced --loop 1000")));
    Print("play_feed, 10 times as long",
          bench::RunPlayer(folder, kDatabase + std::string("--unpaced --loop 10000")));
}

void MeasureStart(const std::string& folder)
{
    const platform::FileDescriptor listening = bench::Listening(5016);
    std::vector<double> times;
    for (int start = 0; start < 50; ++start) {
        const auto begin = std::chrono::steady_clock::now();
        const pid_t process = ::fork();
        if (process == 0) {
            ::execl(PLAY_FEED, PLAY_FEED, "--database", (folder + "feed.mdb").c_str(), "--port", "5016",
                    "--interval", "1", "--to", "1", "--quiet", nullptr);
            ::_exit(1);
        }
        times.push_back(
            std::chrono::duration<double, std::milli>(bench::FirstByte(listening) - begin).count());
        ::waitpid(process, nullptr, 0);
    }
    std::ranges::sort(times);
    std::printf("\nStart to first record, 50 starts: median %.1f ms, p90 %.1f ms\n", times[25], times[45]);
    std::fflush(stdout);
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const int seconds = argumentCount > 1 ? std::stoi(arguments[1]) : 10;
    const TemporaryFolder folder;
    MakeDatabase(folder.Path("feed.mdb"));
    MeasureStart(folder.Path());
    const Sink sink(bench::kPort);
    Head("One till");
    MeasureShop(folder.Path(),
                {.tills = 1, .interval = 1ms, .recordsEach = std::min(kRecords, seconds * 1000)});
    MeasureUnpaced(folder.Path());
    Head("A shop");
    MeasureShop(folder.Path(),
                {.tills = 1000, .interval = 25ms, .recordsEach = std::min(kRecords, seconds * 40)});
    Head("So many tills at one rate");
    for (const int tills : {10, 100, 1000, 5000}) {
        const auto interval = std::chrono::milliseconds(tills / 10);
        MeasureShop(folder.Path(),
                    {.tills = tills,
                     .interval = interval,
                     .recordsEach = std::min<std::int64_t>(kRecords, seconds * 1000 / interval.count())});
    }
}
