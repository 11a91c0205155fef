#include "logic/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace {

const std::string kLog = "/house/Trellivan Error.log";

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line, '\n');)
        lines.push_back(line.substr(0, line.find('\r')));
    return lines;
}

}  // namespace

platform::memory::Row Transaction(int ref, const std::string& text, const std::string& time)
{
    const platform::memory::PlainFormats formats;
    const auto recorded = *formats.DateOrTime("2021-05-14 " + time);
    return {{"ref", ref}, {"rawtransaction", text}, {"timestamp", recorded}, {"datetimestamp", recorded}};
}

Program::Program()
    : globals_("/house", files, profile, clock, formats),
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
            globals_, engine, files, events, clock, formats)
{
    clock.now = *formats.DateOrTime("2021-05-14 15:07:09");
    engine.rows = {Transaction(1, "first", "10:20:30"), Transaction(2, "second", "10:20:31"),
                   Transaction(3, "third", "10:20:32")};
}

Program::~Program()
{
    EXPECT_EQ(TakeRecords(), std::vector<std::string>()) << "records that the test did not expect";
}

void Program::Setting(const std::string& section, const std::string& key, const std::string& value)
{
    HaveSettings();
    profile.values[{section, key}] = value;
}

void Program::HaveDatabase(const std::string& path)
{
    files.contents[path] = "";
    Setting("Database File", "Filepath", path);
}

void Program::Start(bool withDatabase)
{
    HaveSettings();
    if (!profile.values.contains({"Timer", "Interval"}))
        Setting("Timer", "Interval", "25");
    if (withDatabase && !profile.values.contains({"Database File", "Filepath"}))
        HaveDatabase();
    Load();
}

void Program::StartConnected()
{
    StartPlaying("TCP", "Connect");
    WinsockConnect.state = platform::WinsockControl::kConnected;
}

void Program::StartPlaying(const std::string& protocol, const std::string& role)
{
    Setting("TCP/IP Settings", "Protocol", protocol);
    Setting("TCP/IP Settings", "Connect", role);
    Start();
    cmdPlay.OnClick();
    statusTaken_ = lstStatus.lines.size();
    journal.Clear();
}

Texts Program::TakeStatus()
{
    const std::string time = formats.LongTime(clock.now);
    std::vector<std::string> messages;
    for (; statusTaken_ < lstStatus.lines.size(); ++statusTaken_) {
        const std::string& line = lstStatus.lines[statusTaken_];
        EXPECT_TRUE(line.starts_with(time)) << line;
        messages.push_back(line.substr(time.size()));
    }
    return messages;
}

Texts Program::TakeRecords()
{
    std::vector<std::string> records = Lines(files.contents[kLog]);
    for (std::string& record : records) {
        EXPECT_TRUE(record.starts_with(GeneralDate(clock.now, formats) + "|")) << record;
        record.erase(0, record.find('|') + 1);
    }
    files.contents.erase(kLog);
    return records;
}

Texts Program::TakeRecordNames()
{
    std::vector<std::string> names = TakeRecords();
    for (std::string& name : names)
        name.erase(0, name.rfind('|') + 1);
    return names;
}

Texts Program::TakeCalls(const std::string& object)
{
    std::vector<std::string> calls;
    for (const std::string& call : journal.Calls())
        if (call.starts_with(object + "."))
            calls.push_back(call.substr(object.size() + 1));
    journal.Clear();
    return calls;
}
