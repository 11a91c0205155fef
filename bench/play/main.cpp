#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
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

constexpr int kRecords = 20000;  // in the database
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

Run WithoutStart(Run run, const Run& brief)
{
    run.seconds -= brief.seconds;
    return run;
}

void Head(const char* what)
{
    std::printf(
        "\n%s\n\n| sender | records | a second | microseconds each | of a core | lateness p50, p99, max | "
        "resident | status |\n|---|---|---|---|---|---|---|---|\n",
        what);
}

Run RunShop(const std::string& folder, const Feed& feed)
{
    return bench::RunPlayer(folder, kDatabase + std::string("--tills ") + std::to_string(feed.tills) +
                                        " --interval " + std::to_string(feed.interval.count()) + " --to " +
                                        std::to_string(feed.recordsEach));
}

/// What the records cost, without the start: both senders run a second time with one record a till.
void MeasureShop(const std::string& folder, const Feed& feed)
{
    const std::string name =
        std::to_string(feed.tills) + " tills, " + std::to_string(feed.interval.count()) + " ms";
    Feed brief = feed;
    brief.recordsEach = 1;
    Print("bare, " + name, WithoutStart(bench::RunBareTimers(feed), bench::RunBareTimers(brief)));
    Print("play_feed, " + name, WithoutStart(RunShop(folder, feed), RunShop(folder, brief)));
}

void MeasureUnpaced(const std::string& folder)
{
    Head("Unpaced");
    for (int round = 0; round < 3; ++round) {
        Print("bare", bench::RunBareSends(1'000'000));
        Print("play_feed", bench::RunPlayer(folder, kDatabase + std::string("--unpaced --loop 50")));
    }
    Print("play_feed, 10 times as long",
          bench::RunPlayer(folder, kDatabase + std::string("--unpaced --loop 500")));
}

/// Milliseconds from the start of a process with so many tills to the first record of the last one that connects.
double StartOf(const std::string& folder, const std::string& tills)
{
    const platform::FileDescriptor listening = bench::Listening(5016);
    const auto begin = std::chrono::steady_clock::now();
    const pid_t process = ::fork();
    if (process == 0) {
        ::execl(PLAY_FEED, PLAY_FEED, "--database", (folder + "feed.mdb").c_str(), "--port", "5016",
                "--interval", "1", "--to", "1", "--quiet", "--tills", tills.c_str(), nullptr);
        ::_exit(1);
    }
    const auto end = bench::FirstByte(listening, std::stoi(tills));
    ::waitpid(process, nullptr, 0);
    return std::chrono::duration<double, std::milli>(end - begin).count();
}

void MeasureStart(const std::string& folder, const std::string& tills, int starts)
{
    std::vector<double> times;
    for (int start = 0; start < starts; ++start)
        times.push_back(StartOf(folder, tills));
    std::ranges::sort(times);
    std::printf("\nStart to first record of %s tills, %d starts: median %.1f ms, greatest %.1f ms\n",
                tills.c_str(), starts, times[times.size() / 2], times.back());
    std::fflush(stdout);
}

/// 1,000 tills for so many seconds, of which 500 lose their receiver for a second in the middle.
void MeasureVanishing(const std::string& folder, int seconds)
{
    for (const auto& [name, port] : {std::pair("first.ini", 5015), std::pair("second.ini", 5017)})
        std::ofstream(folder + name) << "[Timer]\nInterval=25\n[Database File]\nFilePath=feed.mdb\n"
                                     << "[TCP/IP Settings]\nReconnect=YES\nPortNumber=" << port << "\n";
    const std::string arguments =
        "first.ini second.ini --tills 500 --wait 30 --to " + std::to_string(seconds * 40);
    for (const bool vanish : {false, true}) {
        std::optional<Sink> second(std::in_place, 5017);
        std::jthread remover;
        if (vanish)
            remover = std::jthread([&] {
                std::this_thread::sleep_for(std::chrono::seconds(seconds) / 3);
                second.reset();
                std::this_thread::sleep_for(1s);
                second.emplace(5017);
            });
        const Run run = bench::RunPlayer(folder, arguments);
        std::printf("\n%s: p99 of the other 500 tills: middle %.3f ms, worst %.3f ms (status %d)\n",
                    vanish ? "500 receivers vanish" : "No receiver vanishes", run.middleTill, run.worstTill,
                    run.status);
        std::fflush(stdout);
    }
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const int seconds = argumentCount > 1 ? std::stoi(arguments[1]) : 10;
    const TemporaryFolder folder;
    MakeDatabase(folder.Path("feed.mdb"));
    MeasureStart(folder.Path(), "1", 50);
    MeasureStart(folder.Path(), "1000", 5);
    const Sink sink(bench::kPort);
    Head("One till");
    MeasureShop(folder.Path(), {.tills = 1, .interval = 1ms, .recordsEach = seconds * 1000});
    MeasureUnpaced(folder.Path());
    Head("A shop");
    MeasureShop(folder.Path(), {.tills = 1000, .interval = 25ms, .recordsEach = seconds * 40});
    MeasureVanishing(folder.Path(), seconds);
    Head("So many tills at one rate");
    for (const int tills : {10, 100, 1000, 5000}) {
        const auto interval = std::chrono::milliseconds(tills / 10);
        MeasureShop(folder.Path(),
                    {.tills = tills, .interval = interval, .recordsEach = seconds * 1000 / interval.count()});
    }
}
