#include "play/senders.h"

#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <nlohmann/json.hpp>
#include <vector>

#include "play/sink.h"

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;
using platform::FileDescriptor;

double Seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Does the work in a process of its own and measures that.
Run Measured(const std::function<void()>& work)
{
    const auto begin = Clock::now();
    const pid_t process = ::fork();
    if (process == 0) {
        work();
        ::_exit(0);
    }
    int status = 0;
    rusage usage{};
    ::wait4(process, &status, 0, &usage);
    Run run;
    run.elapsed = std::chrono::duration<double>(Clock::now() - begin).count();
    run.seconds = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
    run.kilobytes = usage.ru_maxrss;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return run;
}

std::string Record()
{
    return std::string(kRecordBytes, 'x');
}

itimerspec Periodic(Clock::time_point first, std::chrono::nanoseconds interval)
{
    const auto inParts = [](std::chrono::nanoseconds time) {
        return timespec{.tv_sec = time.count() / 1'000'000'000, .tv_nsec = time.count() % 1'000'000'000};
    };
    return {.it_interval = inParts(interval), .it_value = inParts(first.time_since_epoch())};
}

/// One till of the bare loop.
struct BareTill {
    FileDescriptor socket;
    FileDescriptor timer;
    Clock::time_point due;
    std::int64_t sent = 0;
};

void Send(BareTill& till, const Feed& feed, const std::string& record, player::Lateness& lateness)
{
    std::uint64_t ticks = 0;
    if (::read(till.timer.Number(), &ticks, sizeof ticks) != sizeof ticks)
        return;
    for (; ticks > 0 && till.sent < feed.recordsEach; --ticks, ++till.sent) {
        lateness.Add(Clock::now() - till.due);
        till.due += feed.interval;
        if (::send(till.socket.Number(), record.data(), record.size(), MSG_NOSIGNAL) < 0)
            ::_exit(1);
    }
}

void PlayBare(const Feed& feed, const FileDescriptor& result)
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    const FileDescriptor epoll(::epoll_create1(EPOLL_CLOEXEC));
    std::vector<BareTill> tills(static_cast<std::size_t>(feed.tills));
    for (BareTill& till : tills)
        till.socket = Connected(kPort);
    const auto start = Clock::now() + std::chrono::milliseconds(100);
    for (std::size_t i = 0; i < tills.size(); ++i) {
        tills[i].timer = FileDescriptor(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC));
        tills[i].due = start + feed.interval * static_cast<int>(i) / feed.tills;
        const itimerspec periodic = Periodic(tills[i].due, feed.interval);
        ::timerfd_settime(tills[i].timer.Number(), TFD_TIMER_ABSTIME, &periodic, nullptr);
        epoll_event wanted{.events = EPOLLIN, .data = {.u64 = i}};
        ::epoll_ctl(epoll.Number(), EPOLL_CTL_ADD, tills[i].timer.Number(), &wanted);
    }
    player::Lateness lateness;
    const std::string record = Record();
    const std::int64_t all = feed.recordsEach * feed.tills;
    std::array<epoll_event, 64> ready;
    for (std::int64_t sent = 0; sent < all;) {
        const int count = ::epoll_wait(epoll.Number(), ready.data(), ready.size(), -1);
        for (int i = 0; i < count; ++i) {
            BareTill& till = tills[ready[static_cast<std::size_t>(i)].data.u64];
            const std::int64_t before = till.sent;
            Send(till, feed, record, lateness);
            sent += till.sent - before;
        }
    }
    const std::array figures = {lateness.Percentile(0.5), lateness.Percentile(0.99), lateness.Greatest()};
    static_cast<void>(::write(result.Number(), figures.data(), sizeof figures) > 0);
}

/// Those that play the first of the settings files.
void AddTills(const nlohmann::json& figures, Run& run)
{
    std::vector<double> latenesses;
    for (const auto& till : figures.value("tills", nlohmann::json::array())) {
        if (till["name"].get<std::string>().starts_with("first"))
            latenesses.push_back(till["lateness_ms"]["p99"]);
    }
    if (latenesses.empty())
        return;
    std::ranges::sort(latenesses);
    run.middleTill = latenesses[latenesses.size() / 2];
    run.worstTill = latenesses.back();
}

}  // namespace

Run RunPlayer(const std::string& folder, const std::string& arguments)
{
    const std::string report = folder + "report.json";
    const std::string command =
        "cd " + folder + " && exec " PLAY_FEED " --quiet --report report.json " + arguments;
    Run run = Measured([&] { ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr); });
    std::ifstream file(report);
    const auto figures = nlohmann::json::parse(file, nullptr, false);
    if (figures.is_discarded())
        return run;
    run.elapsed = figures["seconds"];
    run.records = figures["records"];
    if (const auto& lateness = figures["lateness_ms"]; lateness["p50"].is_number()) {
        run.p50 = lateness["p50"];
        run.p99 = lateness["p99"];
        run.greatest = lateness["max"];
        AddTills(figures, run);
    }
    return run;
}

Run RunBareTimers(const Feed& feed)
{
    int ends[2];
    if (::pipe(ends) != 0)
        return {};
    const FileDescriptor read(ends[0]);
    const FileDescriptor write(ends[1]);
    Run run = Measured([&] { PlayBare(feed, write); });
    std::array<double, 3> figures{};
    if (::read(read.Number(), figures.data(), sizeof figures) != sizeof figures)
        return run;
    run.records = feed.recordsEach * feed.tills;
    run.p50 = figures[0];
    run.p99 = figures[1];
    run.greatest = figures[2];
    return run;
}

Run RunBareSends(std::int64_t records)
{
    Run run = Measured([&] {
        const FileDescriptor socket = Connected(kPort);
        const std::string record = Record();
        for (std::int64_t sent = 0; sent < records; ++sent) {
            if (::send(socket.Number(), record.data(), record.size(), MSG_NOSIGNAL) < 0)
                ::_exit(1);
        }
    });
    run.records = records;
    return run;
}

}  // namespace bench
