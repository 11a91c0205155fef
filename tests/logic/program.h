#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/frm_connect.h"
#include "fakes/clock_and_formats.h"
#include "fakes/components.h"
#include "fakes/controls.h"
#include "fakes/database.h"
#include "fakes/files.h"

using Texts = std::vector<std::string>;

/// Values by key, each in the section that has it.
using Settings = std::map<std::string, std::string>;

/// The whole program over the in-memory platform, at 15:07:09 on 14 May 2021. Its settings name an interval of
/// 25 ms and a database of three records.
///
/// Its error log is strict: a record that no test has taken fails the test, so that "nothing was recorded" is
/// always checked.
class Program {
public:
    Program();
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Gives these settings their values.
    void Set(const Settings& settings);

    /// Starts with these settings.
    void Load(const Settings& settings = {});

    /// The same, and leaves nothing of it to take but records.
    void Start(const Settings& settings = {});

    /// The same, and plays.
    void StartPlaying(const Settings& settings = {});

    /// The same, and the peer's connection is up.
    void StartConnected(const Settings& settings = {});

    void Tick(int times = 1);

    /// Opens this file as the operator does.
    void OpenFile(const std::string& path);

    /// Messages of the status lines that were added since the last call, without their time.
    Texts TakeStatus();

    /// Records written since the last call: "number|description|procedure".
    Texts TakeRecords();

    /// The last "|"-separated field of each of TakeRecords().
    Texts TakeRecordNames();

    /// Calls since the last call of this or of journal.Clear(), on these objects.
    Texts TakeCalls(const Texts& objects);
    Texts TakeSocketCalls() { return TakeCalls({"WinsockConnect", "MCSockConnect"}); }

    platform::fakes::Journal journal;
    platform::fakes::Window window{journal, "window"};
    platform::fakes::TextBox txtIPAddress{journal, "txtIPAddress"};
    platform::fakes::TextBox txtPortNumber{journal, "txtPortNumber"};
    platform::fakes::DropDownList cboProtocol{journal, "cboProtocol"};
    platform::fakes::DropDownList cboConnect{journal, "cboConnect"};
    platform::fakes::CheckBox chkReconnect{journal, "chkReconnect"};
    platform::fakes::CommandButton cmdApply;
    platform::fakes::CommandButton cmdOpenDialogue;
    platform::fakes::CommandButton cmdPlay;
    platform::fakes::CommandButton cmdPause;
    platform::fakes::CommandButton cmdClear;
    platform::fakes::TextBox txtDBTime{journal, "txtDBTime"};
    platform::fakes::TextBox txtTimerInterval{journal, "txtTimerInterval"};
    platform::fakes::TextBox txtHeartbeat{journal, "txtHeartbeat"};
    platform::fakes::TextBox txtFilePath{journal, "txtFilePath"};
    platform::fakes::CheckBox chkTransferTime{journal, "chkTransferTime"};
    platform::fakes::ListBox lstStatus{journal, "lstStatus"};
    platform::fakes::ListBox DataViewList{journal, "DataViewList"};
    platform::fakes::Timer tmrSendData{journal, "tmrSendData"};
    platform::fakes::Winsock WinsockConnect{journal, "WinsockConnect"};
    platform::fakes::Multicast MCSockConnect{journal, "MCSockConnect"};
    platform::fakes::OpenFileDialog CommonDialogueDBFile{journal, "CommonDialogueDBFile"};
    platform::fakes::DatabaseEngine engine{journal, "engine"};
    platform::fakes::FileSystem files{journal, "files"};
    platform::fakes::ProfileFile profile{journal, "profile"};
    platform::fakes::EventQueue events{journal, "events"};
    platform::fakes::Clock clock;
    platform::fakes::PlainFormats formats;
    platform::fakes::ErrorLog errorLog;
    trellivan::modGlobals globals;

private:
    trellivan::frmConnect form_;
    std::size_t statusTaken_ = 0;
};
