#pragma once

#include <functional>
#include <string>

#include "machine.h"
#include "play/checked_settings.h"
#include "play/desk.h"
#include "play/error_list.h"
#include "play/files_to_read.h"
#include "play/held_timer.h"
#include "play/observed_sockets.h"
#include "play/options.h"
#include "play/pace.h"
#include "play/played_engine.h"
#include "play/tally.h"
#include "play/till_settings.h"

namespace player {

/// What all tills of a shop share. All of it outlives them.
struct Surroundings {
    Machine& machine;
    platform::DatabaseEngine& engine;
    const platform::RegionalFormats& formats;
    const Options& options;
    Spans& spans;
    /// Prints a status line or an error of a till; may be empty.
    std::function<void(const std::string& till, const std::string& line)> print;
    /// Called once for each till that was played, when it has ended.
    std::function<void()> ended;
};

/// What distinguishes one till from the others.
struct TillPlan {
    std::string name;
    TillSettings settings;
    std::string folder;  // relative paths of databases start here
    Phase phase;
};

/// The program of one till, put together: the logic at its desk, and around it what the player adds.
class Station {
public:
    struct Events {
        /// The socket may have changed, or taken what waited.
        std::function<void()> changed;
        /// The ticks are held: there is no receiver, or no room.
        std::function<void()> held;
        /// The logic has stopped its ticks.
        std::function<void()> stopped;
        /// After the socket's Finish: the receiver's system has everything.
        std::function<void()> finished;
    };

    /// Failure: UsageError for settings that cannot be played. Nothing is opened yet.
    Station(const Surroundings& surroundings, TillPlan plan, const Events& events);
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    /// Runs the start-up sequence. Failure: UsageError for a database that cannot be played.
    void Load();

    /// True when a record that is sent now goes to somebody.
    [[nodiscard]] bool HasReceiver() const;

    /// True when a record that is sent now does not have to wait long in memory, as far as is known. A feed with a
    /// rhythm does not ask.
    [[nodiscard]] bool HasRoom() const;

    /// The network, which had no room for a datagram, may have some now. It does not tell.
    void TryForRoom() { room_.isFull = false; }

    /// Full path.
    [[nodiscard]] std::string DatabasePath() const;

    /// Bytes that were handed to the connection and not acknowledged yet.
    [[nodiscard]] std::uint64_t Unacknowledged() const;

    void AddError(const std::string& description);

    [[nodiscard]] const std::string& Name() const { return plan_.name; }
    [[nodiscard]] const CheckedSettings& Settings() const { return checked_; }
    [[nodiscard]] bool IsTcp() const { return checked_.protocol == Protocol::kTcp; }
    [[nodiscard]] Desk& TheDesk() { return desk_; }
    [[nodiscard]] HeldTimer& Timer() { return timer_; }
    [[nodiscard]] platform::sockets::Winsock& Socket() { return machine_.winsock; }
    [[nodiscard]] Tally& Counts() { return tally_; }
    [[nodiscard]] const Tally& Counts() const { return tally_; }
    [[nodiscard]] const Pace& ThePace() const { return pace_; }
    [[nodiscard]] const ErrorList& Errors() const { return errors_; }
    [[nodiscard]] const PlayedEngine& Engine() const { return engine_; }

private:
    [[nodiscard]] RecordEvents Followed();
    [[nodiscard]] Desk::Parts PartsOfDesk();
    void PrintErrors();

    const Surroundings& surroundings_;
    TillPlan plan_;
    CheckedSettings checked_;
    FilesToRead files_;
    Tally tally_;
    ErrorList errors_;
    Pace pace_;
    TillMachine machine_;
    HeldTimer timer_;
    DatagramRoom room_;
    ObservedWinsock winsock_;
    ObservedMulticast multicast_;
    RecordEvents recordEvents_;
    PlayedEngine engine_;
    Desk desk_;
};

}  // namespace player
