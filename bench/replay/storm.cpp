#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>

#include "replay/clicker.h"
#include "replay/percentile.h"
#include "replay/scene.h"
#include "replay/storm_peer.h"
#include "replay/usage.h"

/// The client role with Reconnect ticked where every attempt to connect fails: how the window answers, and what is
/// used up.
namespace {

using namespace bench;
using namespace std::chrono_literals;

constexpr std::uint16_t kPort = 5015;  // below those that outgoing connections take for themselves

std::size_t LinesIn(const platform::window::ListBox& list)
{
    return static_cast<std::size_t>(list.verticalScrollBar()->maximum() + list.LinesInView());
}

/// Mean length of the first lines of a list, which the operator's keys walk through.
double MeanLineBytes(platform::window::ListBox& list)
{
    constexpr int kLines = 3'000;
    const auto press = [&](int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&list, &event);
    };
    std::size_t bytes = 0;
    press(Qt::Key_Home);
    for (int i = 0; i < kLines; ++i, press(Qt::Key_Down))
        bytes += list.SelectedText().size();
    return static_cast<double>(bytes) / kLines;
}

std::size_t AttemptsThatFailed(const Scene& scene)
{
    std::ifstream log(scene.ErrorLog());
    std::size_t attempts = 0;
    for (std::string line; std::getline(log, line);)
        attempts += line.find("frmConnect.WinsockConnect.Error") != std::string::npos ? 1 : 0;
    return attempts;
}

/// One line a tenth of the storm: what is in use, and the growth since the line before.
void Watch(Scene& scene, std::chrono::seconds duration)
{
    constexpr int kLooks = 10;
    const platform::window::ListBox& list = scene.Window().lstStatus;
    std::size_t linesBefore = LinesIn(list);
    std::size_t bytesBefore = ResidentBytes();
    for (int i = 0; i < kLooks; ++i) {
        Scene::Run(duration_cast<std::chrono::milliseconds>(duration) / kLooks);
        const std::size_t lines = LinesIn(list);
        const std::size_t bytes = ResidentBytes();
        std::printf("  %9zu lines  %7.1f MiB resident (%+.1f bytes a new line)  %zu descriptors\n", lines,
                    static_cast<double>(bytes) / (1 << 20),
                    (static_cast<double>(bytes) - static_cast<double>(bytesBefore)) /
                        static_cast<double>(std::max<std::size_t>(lines - linesBefore, 1)),
                    OpenDescriptors());
        std::fflush(stdout);
        linesBefore = lines;
        bytesBefore = bytes;
    }
}

void PrintClicks(Clicker& clicker)
{
    const auto& latencies = clicker.Latencies();
    std::printf("  %zu clicks, %zu waiting: p50 %.2f ms  p99 %.2f ms  longest %.2f ms\n", latencies.size(),
                clicker.Waiting(), Percentile(latencies, 0.5), Percentile(latencies, 0.99),
                Percentile(latencies, 1));
}

/// How the program meets the first peer that keeps its connection.
void PrintConnection(Scene& scene, const StormPeer& peer)
{
    const auto begin = std::chrono::steady_clock::now();
    while (peer.Kept() == 0 && std::chrono::steady_clock::now() - begin < 10s)
        Scene::Run(1ms);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
    const std::size_t lines = LinesIn(scene.Window().lstStatus);
    Scene::Run(1s);
    std::printf(
        "  a receiver appears: %zu connection(s), the first after %.1f ms; %zu new lines a second later\n",
        peer.Kept(), time.count(), LinesIn(scene.Window().lstStatus) - lines);
}

void MeasureStorm(const char* name, std::optional<StormPeer::Manner> manner, std::chrono::seconds duration)
{
    std::printf("%s, %d s\n", name, static_cast<int>(duration.count()));
    std::optional<StormPeer> peer;
    if (manner)
        peer.emplace(kPort, *manner);
    Scene scene(
        {.protocol = Protocol::kTcp, .port = kPort, .interval = 25ms, .reconnect = true, .records = 100});
    Clicker clicker(scene.Window().cmdPause);
    scene.Play();
    Watch(scene, duration);
    PrintClicks(clicker);
    std::printf("  %zu attempts failed\n", AttemptsThatFailed(scene));
    if (peer)
        peer->KeepFromNowOn();
    else
        peer.emplace(kPort, StormPeer::Manner::kKeeps);
    PrintConnection(scene, *peer);
    std::printf("  %.1f bytes of text a line, on average\n", MeanLineBytes(scene.Window().lstStatus));
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const QApplication application(argumentCount, arguments);
    const std::chrono::seconds duration(argumentCount > 1 ? std::stoi(arguments[1]) : 60);
    MeasureStorm("Nobody listens", std::nullopt, duration);
    MeasureStorm("The peer accepts and resets at once", StormPeer::Manner::kResets, duration);
    return 0;
}
