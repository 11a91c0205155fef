#include "end_to_end/running_program.h"

#include <sstream>

#include "support/feed_database.h"
#include "support/files.h"

namespace {

constexpr std::size_t kTimeOfDay = 8;  // 15:07:09

}  // namespace

RunningProgram::RunningProgram(const Settings& settings, const Texts& records)
{
    WriteFeedDatabase(folder_.Path("receipts.mdb"), records);
    WriteFile(folder_.Path("Config.ini"),
              "[Timer]\r\nInterval=" + settings.interval + "\r\n[TCP/IP Settings]\r\nIpAddress=" +
                  settings.address + "\r\nPortNumber=" + settings.port + "\r\nConnect=" + settings.role +
                  "\r\nProtocol=" + settings.protocol + "\r\nReconnect=" + settings.reconnect +
                  "\r\n[Database File]\r\nFilePath=" + settings.database + "\r\n");
    trellivan_.Start();
    EXPECT_EQ(TakeLine(), "  Database Initialized");
}

RunningProgram::~RunningProgram()
{
    EXPECT_EQ(TakeReports(), Texts{}) << "was reported besides";
}

Peer RunningProgram::Connect(Peer& listener)
{
    Play();
    EXPECT_TRUE(Reports({"  Connected to IP 127.0.0.1  "}));
    return listener.Accepted();
}

void RunningProgram::Play(const std::string& interval)
{
    Window().txtTimerInterval.SetText(interval);
    Window().cmdPlay.click();
}

void RunningProgram::SendRecords(int count)
{
    const int shown = RecordsShown() + count;
    Play("1");
    EXPECT_TRUE(qtLoop.WaitFor([&] { return RecordsShown() == shown; }))
        << RecordsShown() << " records shown";
    Window().cmdPause.click();
}

testing::AssertionResult RunningProgram::Reports(const Texts& expected)
{
    const auto linesAndRecords = [this] {
        return static_cast<std::size_t>(LinesWaiting()) + Records().size() - recordsTaken_;
    };
    const bool came = qtLoop.WaitFor([&] { return linesAndRecords() >= expected.size(); });
    const bool rests = qtLoop.ComesToRest();
    const Texts reported = TakeReports();
    if (came && rests && reported == expected)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "reported " << testing::PrintToString(reported) << "\nexpected "
                                       << testing::PrintToString(expected) << (rests ? "" : "\nwithout end");
}

Texts RunningProgram::Records() const
{
    Texts records;
    std::istringstream log(ReadFile(folder_.Path("Trellivan Error.log")));
    for (std::string line; std::getline(log, line, '\n');) {
        const auto number = line.find('|') + 1;
        const auto procedure = line.rfind('|');
        records.push_back(line.substr(number, line.find('|', number) - number) +
                          line.substr(procedure, line.size() - procedure - 1));
    }
    return records;
}

std::string RunningProgram::TakeLine()
{
    auto& list = Window().lstStatus;
    const int last = list.SelectedLine();
    list.SetListIndex(linesTaken_++);
    const std::string line = list.SelectedText();
    list.SetListIndex(last);
    return line.substr(kTimeOfDay);
}

Texts RunningProgram::TakeReports()
{
    Texts reports;
    while (LinesWaiting() > 0)
        reports.push_back(TakeLine());
    const Texts records = Records();
    reports.insert(reports.end(), records.begin() + static_cast<std::ptrdiff_t>(recordsTaken_),
                   records.end());
    recordsTaken_ = records.size();
    return reports;
}
