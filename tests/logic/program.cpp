#include "logic/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

std::string SectionOf(const std::string& key)
{
    if (key == "Interval")
        return "Timer";
    if (key == "Filepath")
        return "Database File";
    return key.starts_with("Error_Log") ? "Error Log" : "TCP/IP Settings";
}

/// A record with its recorded time on 14 May 2021.
platform::fakes::Row Transaction(int ref, const std::string& text, const std::string& time)
{
    const auto recorded = *platform::fakes::PlainFormats().DateOrTime("2021-05-14 " + time);
    return {{"ref", ref}, {"rawtransaction", text}, {"timestamp", recorded}, {"datetimestamp", recorded}};
}

}  // namespace

Program::Program()
    : globals({.configFile = "/house/Config.ini", .errorLogFile = "/house/Error.log", .folder = "/house"},
              errorLog, files, profile, clock, formats),
      form_(trellivan::WindowControls{window,           txtIPAddress,
                                      txtPortNumber,    cboProtocol,
                                      cboConnect,       chkReconnect,
                                      cmdApply,         cmdOpenDialogue,
                                      cmdPlay,          cmdPause,
                                      cmdClear,         txtDBTime,
                                      txtTimerInterval, txtHeartbeat,
                                      txtFilePath,      chkTransferTime,
                                      lstStatus,        DataViewList,
                                      tmrSendData,      WinsockConnect,
                                      MCSockConnect,    CommonDialogueDBFile},
            globals, engine, files, events, clock, formats)
{
    clock.now = *formats.DateOrTime("2021-05-14 15:07:09");
    engine.rows = {Transaction(1, "first", "10:20:30"), Transaction(2, "second", "10:20:31"),
                   Transaction(3, "third", "10:20:32")};
    files.contents = {{"/house/Config.ini", ""}, {"/data/shop.mdb", ""}};
    Set({{"Interval", "25"}, {"Filepath", "/data/shop.mdb"}});
}

Program::~Program()
{
    EXPECT_EQ(TakeRecords(), Texts()) << "records that the test did not expect";
}

void Program::Set(const Settings& settings)
{
    for (const auto& [key, value] : settings)
        profile.values[{SectionOf(key), key}] = value;
}

void Program::Load(const Settings& settings)
{
    Set(settings);
    form_.Form_Load();
}

void Program::Start(const Settings& settings)
{
    Load(settings);
    TakeStatus();
    journal.Clear();
}

void Program::StartPlaying(const Settings& settings)
{
    Start(settings);
    cmdPlay.OnClick();
    TakeStatus();
    journal.Clear();
}

void Program::StartConnected(const Settings& settings)
{
    StartPlaying(settings);
    WinsockConnect.state = platform::WinsockControl::kConnected;
}

void Program::Tick(int times)
{
    for (int tick = 0; tick < times; ++tick)
        tmrSendData.OnTimer();
}

void Program::OpenFile(const std::string& path)
{
    CommonDialogueDBFile.choice = path;
    cmdOpenDialogue.OnClick();
}

Texts Program::TakeStatus()
{
    const std::string time = formats.LongTime(clock.now);
    Texts messages;
    for (; statusTaken_ < lstStatus.lines.size(); ++statusTaken_) {
        const std::string& line = lstStatus.lines[statusTaken_];
        EXPECT_TRUE(line.starts_with(time)) << line;
        messages.push_back(line.substr(time.size()));
    }
    return messages;
}

Texts Program::TakeRecords()
{
    return std::exchange(errorLog.records, {});
}

Texts Program::TakeRecordNames()
{
    Texts names = TakeRecords();
    for (std::string& name : names)
        name.erase(0, name.rfind('|') + 1);
    return names;
}

Texts Program::TakeCalls(const Texts& objects)
{
    Texts calls;
    for (const std::string& call : journal.Calls()) {
        const std::size_t dot = call.find('.');
        if (std::ranges::count(objects, call.substr(0, dot)) > 0)
            calls.push_back(call.substr(dot + 1));
    }
    journal.Clear();
    return calls;
}
