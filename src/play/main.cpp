#include <QLocale>
#include <chrono>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>

#include "machine.h"
#include "platform/jet/shared_engine.h"
#include "platform/posix/signals.h"
#include "platform/posix/standard_error.h"
#include "play/exit_status.h"
#include "play/progress.h"
#include "play/remembered_formats.h"
#include "play/report.h"
#include "play/report_file.h"
#include "play/roster.h"
#include "play/shop.h"
#include "play/usage_error.h"

namespace player {
namespace {

using platform::posix::Signals;
using platform::posix::StandardError;

// Complaints and the summary wait so long for a slow reader.
constexpr std::chrono::milliseconds kPatience{1000};

QLocale ChosenLocale(const std::optional<std::string>& name)
{
    if (!name)
        return QLocale::system();
    if (const auto locale = platform::regional::LocaleNamed(*name))
        return *locale;
    throw UsageError("There are no regional formats named \"" + *name + "\"");
}

bool IsReadable(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    file.peek();
    return file.is_open() && !file.bad();
}

std::string ProgramFolder()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

/// One run of the program.
class Run {
public:
    Run(const Options& options, StandardError& output)
        : options_(options),
          output_(output),
          machine_(ChosenLocale(options.locale)),
          formats_(machine_.formats),
          spans_(options.range, formats_),
          shop_({machine_, engine_, formats_, options_, spans_, Printer(), {}},
                [this](const std::string& line) { Complain(line); }),
          signals_(machine_.loop, {SIGINT, SIGTERM}, [this](int signal) { Interrupt(signal); }),
          progress_(output, machine_.loop, [this] { return shop_.Now(); })
    {}

    int Play()
    {
        if (options_.report)
            reportFile_.emplace(*options_.report);
        shop_.Open(PlansOf(options_,
                           {machine_.files, machine_.profile, formats_, ProgramFolder(), IsReadable},
                           std::chrono::steady_clock::now()));
        showsProgress_ = output_.IsTerminal() && !options_.quiet;
        if (showsProgress_)
            progress_.Start();
        if (reportFile_)
            reportFile_->Clear();
        shop_.Play();
        return Tell();
    }

private:
    std::function<void(const std::string&, const std::string&)> Printer()
    {
        if (!options_.status)
            return {};
        return [this](const std::string& till, const std::string& line) {
            if (showsProgress_)
                progress_.Clear();
            output_.Write((shop_.IsSingle() ? "" : till + ": ") + line + "\n");
        };
    }

    void Complain(const std::string& line) { output_.WriteWithin("play_feed: " + line + "\n", kPatience); }

    void Interrupt(int signal)
    {
        ++interruptions_;
        shop_.Interrupt(signal);
    }

    int Tell()
    {
        interruptionsAtEnd_ = interruptions_;
        const std::vector<Figures> figures = shop_.Report();
        if (showsProgress_)
            progress_.Clear();
        if (!options_.quiet && shop_.HasPlayed())
            output_.WriteWithin(SummaryOf(figures), kPatience);
        if (!reportFile_ || reportFile_->Write(ReportOf(figures, options_.IsShop()),
                                               [this] { return !IsInterruptedAgain(); }))
            return shop_.ExitStatus();
        Complain("The report cannot be written");
        return std::max(shop_.ExitStatus(), exit_status::kIncomplete);
    }

    /// Since the feed has ended.
    bool IsInterruptedAgain()
    {
        machine_.loop.RunPass(platform::Waiting::kNo);
        return interruptions_ > interruptionsAtEnd_;
    }

    const Options& options_;
    StandardError& output_;
    Machine machine_;
    RememberedFormats formats_;
    platform::jet::SharedEngine engine_;
    Spans spans_;
    Shop shop_;
    Signals signals_;
    ProgressLine progress_;
    bool showsProgress_ = false;
    int interruptions_ = 0;
    int interruptionsAtEnd_ = 0;
    std::optional<ReportFile> reportFile_;
};

int PlayFeed(int argumentCount, const char* const* arguments)
{
    platform::posix::OpenStandardDescriptors();
    StandardError output;
    try {
        const auto command = ParseOptions(argumentCount, arguments);
        if (const int* const status = std::get_if<int>(&command))
            return *status;
        return Run(std::get<Options>(command), output).Play();
    } catch (const UsageError& error) {
        output.WriteWithin(std::string("play_feed: ") + error.what() + "\n", kPatience);
        return exit_status::kUnplayable;
    } catch (const std::exception& failure) {
        output.WriteWithin(std::string("play_feed cannot start: ") + failure.what() + "\n", kPatience);
        return exit_status::kIncomplete;
    }
}

}  // namespace
}  // namespace player

int main(int argumentCount, char** arguments)
{
    return player::PlayFeed(argumentCount, arguments);
}
