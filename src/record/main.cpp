#include <QLocale>
#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "platform/event_gate.h"
#include "platform/posix/clock.h"
#include "platform/posix/epoll_loop.h"
#include "platform/posix/signals.h"
#include "platform/posix/standard_error.h"
#include "platform/regional/regional_formats.h"
#include "record/command_line.h"
#include "record/console.h"
#include "record/source.h"

namespace {

using namespace record;

constexpr std::chrono::milliseconds kPatience{1000};  // with who reads the summary

QLocale ChosenLocale(const std::string& name)
{
    if (name.empty())
        return QLocale::system();
    if (const auto locale = platform::regional::LocaleNamed(name))
        return *locale;
    throw WrongUsage("--locale: \"" + name + "\" is no locale known here");
}

std::unique_ptr<platform::Alarm> EndAfter(std::optional<std::chrono::milliseconds> duration,
                                          platform::EventLoop& loop, Recorder& recorder)
{
    auto alarm = loop.NewAlarm([&] { recorder.End(); });
    if (duration)
        alarm->Set(std::chrono::steady_clock::now() + *duration);
    return alarm;
}

/// What a recording needs to begin. Where that fails, no new file is left behind.
template <class Make>
auto MadeFor(RecordingFile& file, const Make& make)
{
    try {
        return make();
    } catch (...) {
        file.RemoveIfNew();
        throw;
    }
}

void SayWhatWasFound(const RecordingFile& file, Console& console)
{
    if (file.TornBytes() > 0)
        console.Say("the last record in " + file.Path() + " was cut off; its " +
                    std::to_string(file.TornBytes()) + " bytes are taken away");
    if (file.LastRowMayBeTorn())
        console.Say("the last line in " + file.Path() + " had no end; its record may lack one too");
    if (file.NextRef() > 1)
        console.Say(file.Path() + " goes on with ref " + std::to_string(file.NextRef()));
}

/// Records until the end is asked for or comes.
void Record(const Options& options, RecordingFile& file, platform::EventLoop& loop, Recorder& recorder,
            Console& console, const bool& isInterrupted)
{
    platform::EventGate gate;
    const platform::posix::Clock clock;
    const auto end = EndAfter(options.duration, loop, recorder);
    const Surroundings surroundings{loop, gate, clock, recorder, console, options};
    const auto source = MadeFor(file, [&] { return OpenSource(surroundings); });
    while (!recorder.HasEnded() && !isInterrupted)
        loop.RunPass(platform::Waiting::kYes);
    source->Finish();
    recorder.Finish();
}

int Run(const Options& options)
{
    const platform::regional::RegionalFormats formats(ChosenLocale(options.locale));
    Console console(options.quiet ? Console::Loudness::kQuiet : Console::Loudness::kUsual);
    platform::posix::EpollLoop loop;
    bool isInterrupted = false;
    // Whoever started it with nohup wants it to outlive the terminal.
    const int hangUp = platform::posix::WasIgnored(SIGHUP) ? SIGTERM : SIGHUP;
    const platform::posix::Signals endSignals(loop, {SIGINT, SIGTERM, hangUp},
                                              [&](int) { isInterrupted = true; });
    RecordingFile file(options.file, options.onExisting);
    SayWhatWasFound(file, console);
    const Recorder::Settings settings{options.rule.transferTime, options.records};
    auto recorder = MadeFor(file, [&] { return Recorder(loop, file, formats, console, settings); });
    try {
        Record(options, file, loop, recorder, console, isInterrupted);
    } catch (const std::exception&) {
        if (file.Rows() > 0)
            console.Say("the " + std::to_string(file.Rows()) + " records before are whole in " + file.Path());
        throw;
    }
    for (const std::string& line : SummaryLines(recorder.Counts(), file.Path()))
        console.Say(line, kPatience);
    return 0;
}

}  // namespace

int main(int count, char** words)
{
    platform::posix::OpenStandardDescriptors();
    return RunCommandLine(count, words, Run);
}
