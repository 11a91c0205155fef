#include <pthread.h>
#include <sanitizer/common_interface_defs.h>

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "fuzz_window/checks.h"
#include "fuzz_window/crowd.h"
#include "fuzz_window/operator.h"
#include "fuzz_window/stage.h"
#include "window/trellivan.h"

/// The whole program in its window under an operator who does anything in any order, among faults of its files
/// and its peers. Every few hundred events all is put in order and the program must work as ever.

/// So that an abort shows the stack.
extern "C" const char* __asan_default_options()
{
    return "handle_abort=1";
}

namespace {

using namespace std::chrono_literals;

std::uint64_t seed = 1;
std::uint64_t event = 0;

void TellWhere()
{
    std::fprintf(stderr, "seed %llu, event %llu\n", static_cast<unsigned long long>(seed),
                 static_cast<unsigned long long>(event));
}

/// Aborts the thread that made it when its event loop does not come round within a time that nothing
/// here takes.
class Watchdog {
public:
    Watchdog()
    {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            longest_ = std::max(longest_, Clock::now() - last_.load());
            last_ = Clock::now();
        });
        timer_.start(20ms);
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog()
    {
        stopping_ = true;
        thread_.join();
    }

    [[nodiscard]] std::chrono::milliseconds LongestPause() const
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(longest_);
    }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kLongest{20};

    void Watch(pthread_t watched)
    {
        for (; !stopping_; std::this_thread::sleep_for(50ms))
            if (Clock::now() - last_.load() > kLongest && !stopping_.exchange(true)) {
                std::fputs("the window does not answer\n", stderr);
                ::pthread_kill(watched, SIGABRT);
            }
    }

    QTimer timer_;
    Clock::duration longest_{0};
    std::atomic<Clock::time_point> last_ = Clock::now();
    std::atomic<bool> stopping_ = false;
    std::thread thread_{[this, watched = ::pthread_self()] { Watch(watched); }};
};

class Campaign {
public:
    Campaign() { PutInOrder(); }

    void Round(std::uint64_t events)
    {
        using checks::Feed;
        constexpr Feed kFeeds[] = {Feed::kClient, Feed::kServer, Feed::kDatagrams, Feed::kGroup};
        Random random(seed, event);
        RunEvents(events);
        if (random.OneIn(3))
            Restart();  // among the faults
        crowd_.Leave();
        PutInOrder();
        const Feed feed = atRest_ ? random.Of(kFeeds) : Feed::kGroup;  // whose socket stays open
        if (feed == Feed::kGroup)
            Restart();
        checks::PlaysWholeFeed(program_->Window(), feed);
        const checks::Usage now = checks::UsageAtRest(program_->Window());
        if (!atRest_)
            atRest_ = now;
        checks::NothingPiledUp(*atRest_, now);
    }

private:
    /// The former program ends as it is, playing or not.
    void Restart()
    {
        program_.reset();
        program_ = std::make_unique<Trellivan>(stage::kFolder, QLocale::c());
        program_->Start();
        operator_.emplace(program_->Window());
    }

    static void PutInOrder()
    {
        std::error_code ignored;
        if (std::filesystem::is_regular_file(stage::kLog, ignored)) {
            std::ifstream log(stage::kLog, std::ios::binary);
            checks::LogIsWellFormed({std::istreambuf_iterator<char>(log), {}});
        }
        stage::Furnish();
    }

    void RunEvents(std::uint64_t count)
    {
        static constexpr int kPauses[] = {0, 0, 0, 0, 1, 2, 5, 20};  // milliseconds
        if (!program_)
            Restart();
        QEventLoop loop;
        const std::uint64_t end = event + count;
        const std::function<void()> next = [&] {
            // First of all: what is done now may run an event loop of its own.
            QTimer::singleShot(Random(seed, ~event).Of(kPauses), &loop, next);
            crowd_.Step();
            if (event < end)
                Do(event++);
            else if (!operator_->PutAway())
                loop.quit();
        };
        next();
        loop.exec();
    }

    void Do(std::uint64_t number)
    {
        Random random(seed, number);
        if (random.OneIn(200))
            PutInOrder();
        else if (random.OneIn(80))
            stage::CauseFault(random);
        else if (random.OneIn(40))
            crowd_.Change(random);
        else
            operator_->Act(random);
    }

    Crowd crowd_;
    std::unique_ptr<Trellivan> program_;
    std::optional<Operator> operator_;
    std::optional<checks::Usage> atRest_;
};

void Run(std::uint64_t events)
{
    constexpr std::uint64_t kEventsARound = 500;
    const Watchdog watchdog;
    Campaign campaign;
    while (event < events)
        campaign.Round(std::min(kEventsARound, events - event));
    TellWhere();
    std::printf("the longest pause: %d ms\n", static_cast<int>(watchdog.LongestPause().count()));
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    seed = argumentCount > 1 ? std::stoull(arguments[1]) : 1;
    const std::uint64_t events = argumentCount > 2 ? std::stoull(arguments[2]) : 10'000;
    __sanitizer_set_death_callback(&TellWhere);
    try {
        stage::Build();
        const QApplication application(argumentCount, arguments);
        QApplication::setQuitOnLastWindowClosed(false);
        Run(events);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
