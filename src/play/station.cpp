#include "play/station.h"

#include <filesystem>
#include <utility>

#include "play/usage_error.h"

namespace player {
namespace {

// Unpaced, so much may wait for the network.
constexpr std::size_t kMostWaiting = std::size_t{256} << 10;

/// The tills of a shop spread over a fifth of the pause, too.
std::chrono::milliseconds ErrorsApart(const Phase& phase)
{
    constexpr std::chrono::milliseconds kLeast = platform::sockets::Winsock::kErrorsApart;
    return kLeast + std::chrono::floor<std::chrono::milliseconds>(kLeast / 5 * phase.share);
}

}  // namespace

Station::Station(const Surroundings& surroundings, TillPlan plan, const Events& events)
    : surroundings_(surroundings),
      plan_(std::move(plan)),
      checked_(Check(plan_.settings, surroundings.formats)),
      files_(surroundings.machine.files),
      tally_([this] { return Unacknowledged(); }),
      pace_(surroundings.options, plan_.phase, surroundings.formats),
      machine_(
          surroundings.machine, pace_.Ticks(),
          [this] { surroundings_.machine.loop.RunPass(platform::Waiting::kNo); }, ErrorsApart(plan_.phase)),
      timer_(machine_.timer, pace_.TicksAtOnce(),
             {.mayTick = [this] { return HasReceiver() && HasRoom(); },
              .held = events.held,
              .stopped = events.stopped}),
      room_({.isAwaited = pace_.IsUnpaced(), .isFull = false}),
      winsock_(machine_.winsock, tally_, room_,
               {.changed = events.changed, .ended = [this] { tally_.Lost(Unacknowledged()); }}),
      multicast_(machine_.multicast, tally_, room_),
      recordEvents_(Followed()),
      engine_({surroundings.engine, surroundings.spans, surroundings.options.loops, recordEvents_}),
      desk_(PartsOfDesk(), {.configFile = plan_.settings.Path(), .errorLogFile = "", .folder = plan_.folder})
{
    machine_.winsock.OnDrained = events.changed;
    machine_.winsock.OnLost = [this](const auto& progress) { tally_.Lost(progress.unacknowledged); };
    machine_.winsock.OnFinished = events.finished;
    PrintErrors();
}

RecordEvents Station::Followed()
{
    return {
        .opened = [this](const platform::RecordSet& records) { pace_.StandsAt(records, true); },
        .movedOn =
            [this](const platform::RecordSet& records, bool beginsAgain) {
                tally_.MovedOn();
                pace_.StandsAt(records, beginsAgain);
            },
        .unreadable = [this] { tally_.RecordUnreadable(); },
        .playsAgain = [this] { return winsock_.IsBroken() || room_.isFull; },
    };
}

Desk::Parts Station::PartsOfDesk()
{
    std::function<void(const std::string&)> onStatus;
    if (surroundings_.print)
        onStatus = [this](const std::string& line) { surroundings_.print(plan_.name, line); };
    return {
        .gate = machine_.gate,
        .timer = timer_,
        .winsock = winsock_,
        .multicast = multicast_,
        .events = machine_.events,
        .engine = engine_,
        .files = files_,
        .settings = plan_.settings,
        .errors = errors_,
        .clock = surroundings_.machine.clock,
        .formats = surroundings_.formats,
        .onStatus = std::move(onStatus),
    };
}

void Station::PrintErrors()
{
    if (!surroundings_.print)
        return;
    errors_.onRecord = [this](const platform::ErrorRecord& record) {
        surroundings_.print(plan_.name, record.number + " " + record.procedure + ": " + record.description);
    };
}

void Station::Load()
{
    const std::string fullPath = DatabasePath();
    if (!files_.FileExists(fullPath))
        throw UsageError("There is no database " + fullPath);
    desk_.Load(surroundings_.options.transferTime);
    if (engine_.Problem())
        throw UsageError(*engine_.Problem());
    if (!engine_.IsOpen())
        throw UsageError(fullPath + " is neither an mdb nor an sdd file");
}

std::string Station::DatabasePath() const
{
    return std::filesystem::path(plan_.folder) / plan_.settings.Value(keys::kDatabase, keys::kFilePath);
}

bool Station::HasReceiver() const
{
    return checked_.protocol == Protocol::kMulticast || winsock_.HasReceiver();
}

bool Station::HasRoom() const
{
    return !pace_.IsUnpaced() || (machine_.winsock.WaitingBytes() < kMostWaiting && !room_.isFull);
}

std::uint64_t Station::Unacknowledged() const
{
    return machine_.winsock.Progress().unacknowledged;
}

void Station::AddError(const std::string& description)
{
    errors_.Write("", {"0", description, "play_feed"});
}

}  // namespace player
