#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "support/feed_database.h"
#include "support/run_command.h"
#include "support/temporary_folder.h"
#include "support/texts.h"

/// How a run of play_feed ended.
struct PlayerOutcome {
    int status = 0;      // 128 and the number of a signal that ended it
    std::string errors;  // standard error
    nlohmann::json report;

    /// "0 complete, 3 records, 0 refused, 0 in doubt".
    [[nodiscard]] std::string Brief() const;
};

/// A run of play_feed in a folder, which has a database "feed.mdb" of records with the refs 10, 20, ... and recorded
/// times a second apart.
class Player {
public:
    /// The records in UTF-8.
    explicit Player(const Texts& records = {"one", "two", "three"}) { MakeDatabase("feed.mdb", records); }

    [[nodiscard]] std::string Path(const std::string& name) const { return folder_.Path(name); }

    /// Makes another database in the folder.
    void MakeDatabase(const std::string& name, const Texts& records) const
    {
        WriteFeedDatabase(Path(name), records);
    }

    /// Starts the command with these arguments, which a shell reads, and a report. What the shell command `before`
    /// does is done first, in the same process; it ends with a semicolon.
    void Start(const std::string& arguments, const std::string& before = "");
    [[nodiscard]] const RunningCommand& Running() const { return running_.value(); }
    [[nodiscard]] PlayerOutcome Outcome();

    [[nodiscard]] PlayerOutcome Play(const std::string& arguments, const std::string& before = "")
    {
        Start(arguments, before);
        return Outcome();
    }

private:
    TemporaryFolder folder_;
    std::optional<RunningCommand> running_;
};
