#include <QApplication>
#include <cstdio>
#include <string>

#include "replay/scene.h"
#include "replay/usage.h"

/// What a tick costs, and the memory, with so many lines shown: all processor time of the window's thread at 1 ms,
/// painting included, divided by the records sent.
namespace {

using namespace bench;
using namespace std::chrono_literals;

constexpr std::size_t kLastLineThatCanBeSelected = 32'767;

/// A replay over UDP at 1 ms, and its list, to which lines can be added beside the replay.
class Replay {
public:
    Replay()
    {
        scene_.Play();
        Scene::Run(1s);
    }

    [[nodiscard]] std::size_t RecordsSent() const { return receiver_.Count(); }

    void FillTo(std::size_t lines)
    {
        for (; added_ + RecordsSent() < lines; ++added_)
            scene_.Window().DataViewList.AddItem(line_);
        Scene::Run(1s);
    }

    void Measure(const char* name)
    {
        constexpr auto kDuration = 3s;
        const std::size_t sentBefore = RecordsSent();
        const auto timeBefore = ThreadTime();
        Scene::Run(kDuration);
        const std::chrono::duration<double, std::micro> time = ThreadTime() - timeBefore;
        const auto ticks = static_cast<double>(RecordsSent() - sentBefore);
        std::printf("%-34s %9zu lines  %6.1f us a tick  %5.1f %% of a core  %7.1f MiB resident\n", name,
                    added_ + RecordsSent(), time.count() / ticks, time / kDuration * 100,
                    static_cast<double>(ResidentBytes()) / (1 << 20));
        std::fflush(stdout);
    }

private:
    Receiver receiver_{Protocol::kUdp, kRecordSize};
    Scene scene_{{.protocol = Protocol::kUdp, .port = receiver_.Port(), .interval = 1ms, .records = 150'000}};
    const std::string line_ = RecordText(0);
    std::size_t added_ = 0;
};

/// The lines alone: the records sent stay few, so each tick selects its line.
void MeasureSelecting()
{
    Replay replay;
    for (const std::size_t lines : {1'000U, 100'000U, 1'000'000U, 10'000'000U}) {
        replay.FillTo(lines);
        replay.Measure("line selected");
    }
}

/// As it is in a long run: past the last line that can be selected, each tick leaves an error record.
void MeasureLongRun()
{
    Replay replay;
    while (replay.RecordsSent() <= kLastLineThatCanBeSelected + 1)
        Scene::Run(100ms);
    for (const std::size_t lines : {0U, 100'000U, 1'000'000U, 10'000'000U}) {
        replay.FillTo(lines);
        replay.Measure("not selected, with error record");
    }
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const QApplication application(argumentCount, arguments);
    MeasureSelecting();
    MeasureLongRun();
    return 0;
}
