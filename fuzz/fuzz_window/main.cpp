#include <gtest/gtest.h>
#include <sanitizer/common_interface_defs.h>

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include "fuzz_window/checks.h"
#include "fuzz_window/crowd.h"
#include "fuzz_window/faults.h"
#include "fuzz_window/operator.h"
#include "fuzz_window/stage.h"
#include "fuzz_window/watchdog.h"

namespace {

std::uint64_t seed = 1;
std::uint64_t event = 0;

void TellWhere()
{
    std::fprintf(stderr, "seed %llu, event %llu\n", static_cast<unsigned long long>(seed),
                 static_cast<unsigned long long>(event));
}

class Campaign {
public:
    Campaign()
    {
        stage::Furnish();
        Start();
    }

    void Round(std::uint64_t events)
    {
        Random random(seed, event);
        RunEvents(events);
        if (random.OneIn(3))
            Start();  // among the faults
        std::ifstream log(stage::kLog, std::ios::binary);
        checks::LogIsWellFormed({std::istreambuf_iterator<char>(log), {}});
        crowd_.Leave();
        stage::Furnish();
        const auto feed = random.Of(
            {checks::Feed::kClient, checks::Feed::kServer, checks::Feed::kDatagrams, checks::Feed::kGroup});
        if (feed == checks::Feed::kGroup)
            Start();
        checks::PlaysWholeFeed(program_->Window(), feed);
        if (atRest_)
            checks::NothingWasKept(*atRest_, program_->Window());
        else
            atRest_ = checks::AtRest(program_->Window());
    }

private:
    /// The former program ends as it is, playing or not.
    void Start()
    {
        program_.reset();
        program_ = std::make_unique<Trellivan>(stage::kFolder, QLocale::c());
        program_->Start();
        operator_.emplace(program_->Window());
    }

    void RunEvents(std::uint64_t count)
    {
        QEventLoop loop;
        const std::uint64_t end = event + count;
        const std::function<void()> next = [&] {
            QTimer::singleShot(0, &loop, next);  // first: what is done now may run an event loop of its own
            crowd_.Step();
            if (event < end)
                Do(event++);
            else if (!Operator::PutAway())
                loop.quit();
        };
        next();
        loop.exec();
    }

    void Do(std::uint64_t number)
    {
        Random random(seed, number);
        if (random.OneIn(40))
            CauseFileFault(random);
        else if (random.OneIn(30))
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
    while (event < events) {
        campaign.Round(std::min(kEventsARound, events - event));
        std::printf("%llu events, the longest pause %lld ms\n", static_cast<unsigned long long>(event),
                    static_cast<long long>(watchdog.Longest().count()));
        std::fflush(stdout);
    }
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    seed = argumentCount > 1 ? std::stoull(arguments[1]) : 1;
    const std::uint64_t events = argumentCount > 2 ? std::stoull(arguments[2]) : 2'000;
    std::printf("seed %llu, %llu events\n", static_cast<unsigned long long>(seed),
                static_cast<unsigned long long>(events));
    __sanitizer_set_death_callback(&TellWhere);
    try {
        stage::Build();
        QApplication application(argumentCount, arguments);
        QApplication::setQuitOnLastWindowClosed(false);
        Run(events);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        TellWhere();
        return 1;
    }
    return 0;
}
