#include <QApplication>
#include <cstdio>
#include <string>

#include "replay/bare_loop.h"
#include "replay/pace_figures.h"
#include "replay/scene.h"
#include "replay/usage.h"

/// The pace of the replay as a receiver on this machine sees it, beside that of a bare timer loop.
namespace {

using namespace bench;

using std::chrono::milliseconds;
using std::chrono::seconds;

void Print(const char* sender, Protocol protocol, milliseconds interval, const Receiver::Arrivals& arrivals,
           const std::string& usage)
{
    if (arrivals.size() < 10) {
        std::printf("%-5s %3d ms  %-7s  %zu records received\n", NameOf(protocol),
                    static_cast<int>(interval.count()), sender, arrivals.size());
        return;
    }
    const PaceFigures figures = FiguresOf(arrivals, interval);
    std::printf(
        "%-5s %3d ms  %-7s %9.3f/s %+8.4f %% %4ld lost  late %.3f %.3f %.3f ms  gap p99 %.3f ms  %s\n",
        NameOf(protocol), static_cast<int>(interval.count()), sender, figures.recordsPerSecond,
        figures.meanErrorPercent, figures.lostTicks, figures.lateness50, figures.lateness99,
        figures.lateness999, figures.gap99, usage.c_str());
    std::fflush(stdout);
}

void MeasureBareLoop(Protocol protocol, milliseconds interval, seconds duration)
{
    Receiver receiver(protocol, kRecordSize);
    RunBareLoop(protocol, receiver.Port(), kRecordSize, interval, duration);
    Print("bare", protocol, interval, receiver.Stop(), "");
}

void MeasureProgram(Protocol protocol, milliseconds interval, seconds duration)
{
    Receiver receiver(protocol, kRecordSize);
    const auto records = static_cast<std::size_t>(2 * duration / interval);
    Scene scene({.protocol = protocol, .port = receiver.Port(), .interval = interval, .records = records});
    scene.Play();
    const auto before = ThreadTime();
    Scene::Run(duration);
    const double load = std::chrono::duration<double>(ThreadTime() - before) / duration;
    Print("program", protocol, interval, receiver.Stop(),
          "core " + std::to_string(load * 100).substr(0, 4) + " %");
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const QApplication application(argumentCount, arguments);
    if (argumentCount != 3) {
        std::fputs("replay_pace TCP|UDP|MCAST SECONDS\n", stderr);
        return 2;
    }
    const std::string name = arguments[1];
    const seconds duration(std::stoi(arguments[2]));
    std::puts("records a second, error of the mean interval, lost ticks, lateness p50 p99 p99.9, gap p99");
    for (const Protocol protocol : {Protocol::kTcp, Protocol::kUdp, Protocol::kMulticast}) {
        if (name != NameOf(protocol))
            continue;
        for (const milliseconds interval :
             {milliseconds(1), milliseconds(2), milliseconds(5), milliseconds(25)}) {
            MeasureBareLoop(protocol, interval, duration);
            MeasureProgram(protocol, interval, duration);
        }
    }
    return 0;
}
