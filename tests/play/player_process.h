#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

using Texts = std::vector<std::string>;

/// How a run of play_feed ended.
struct PlayerOutcome {
    int status = 0;      // 128 and the number of a signal that ended it
    std::string errors;  // standard error
    nlohmann::json report;
};

/// A run of play_feed in a folder, which has a database "feed.mdb" of records with the refs 10, 20, ... and recorded
/// times a second apart.
class Player {
public:
    explicit Player(const Texts& records = {"one", "two", "three"});
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    [[nodiscard]] std::string Path(const std::string& name) const { return folder_.Path(name); }

    /// Makes another database in the folder.
    void MakeDatabase(const std::string& name, const Texts& records) const;

    /// Starts the command with these arguments, which a shell reads, and a report.
    void Start(const std::string& arguments);
    void Signal(int signal) const;
    [[nodiscard]] PlayerOutcome Outcome();

    [[nodiscard]] PlayerOutcome Play(const std::string& arguments)
    {
        Start(arguments);
        return Outcome();
    }

    /// With so many descriptors at most.
    [[nodiscard]] PlayerOutcome PlayLimited(int descriptors, const std::string& arguments)
    {
        before_ = "ulimit -n " + std::to_string(descriptors) + "; ";
        return Play(arguments);
    }

    /// What has been printed so far.
    [[nodiscard]] std::string Errors() const;

private:
    TemporaryFolder folder_;
    std::string before_;  // the command
    int process_ = 0;
};
