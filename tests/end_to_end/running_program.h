#pragma once

#include <gtest/gtest.h>

#include <string>

#include "end_to_end/qt_loop.h"
#include "support/peer.h"
#include "support/temporary_folder.h"
#include "support/texts.h"
#include "window/trellivan.h"

/// What the settings file holds. At interval 0 a replay that runs has no ticks, and nothing races with it.
struct Settings {
    std::string protocol = "TCP";
    std::string role = "Connect";
    std::string address = "127.0.0.1";
    std::string port = "5015";
    std::string reconnect = "NO";
    std::string interval = "0";
    std::string database = "receipts.mdb";
};

/// The whole program in its real window, started in a folder with settings and a database.
///
/// It is strict: a status line or an error record that no test has taken fails the test at the end. That of
/// the opened database is taken.
class RunningProgram {
public:
    explicit RunningProgram(const Settings& settings, const Texts& records = {"one", "two", "three"});
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    /// Plays without ticks until the connection to this listener is up, and takes what was reported so far.
    [[nodiscard]] Peer Connect(Peer& listener);

    /// Types the interval and clicks Play.
    void Play(const std::string& interval = "0");
    /// Plays until so many more records were shown, and pauses.
    void SendRecords(int count);

    /// Number of records shown.
    [[nodiscard]] int RecordsShown() { return Window().DataViewList.SelectedLine() + 1; }

    /// Number of status lines that nobody has taken yet.
    [[nodiscard]] int LinesWaiting() { return Window().lstStatus.SelectedLine() + 1 - linesTaken_; }

    /// Runs the event loop until as much was reported as is expected and nothing more comes, and takes it: the
    /// status lines without their time, then the error records as "number|procedure".
    [[nodiscard]] testing::AssertionResult Reports(const Texts& expected);

    [[nodiscard]] platform::window::MainWindow& Window() { return trellivan_.Window(); }

private:
    [[nodiscard]] Texts Records() const;
    [[nodiscard]] std::string TakeLine();
    [[nodiscard]] Texts TakeReports();

    TemporaryFolder folder_;
    Trellivan trellivan_{folder_.Path(), QLocale::c()};
    int linesTaken_ = 0;
    std::size_t recordsTaken_ = 0;
};
