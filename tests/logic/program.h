#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/frm_connect.h"
#include "platform/memory/clock_and_formats.h"
#include "platform/memory/components.h"
#include "platform/memory/controls.h"
#include "platform/memory/database.h"
#include "platform/memory/files.h"

using Texts = std::vector<std::string>;

/// Values by key, each in the section that has it.
using Settings = std::map<std::string, std::string>;

inline const std::string kErrorLog = "/house/Trellivan Error.log";

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

    /// Records written since the last call, without their time: "number|description|procedure".
    Texts TakeRecords();

    /// The last "|"-separated field of each of TakeRecords().
    Texts TakeRecordNames();

    /// Calls since the last call of this or of journal.Clear(), on these objects.
    Texts TakeCalls(const Texts& objects);
    Texts TakeSocketCalls() { return TakeCalls({"WinsockConnect", "MCSockConnect"}); }

    platform::memory::Journal journal;
    platform::memory::Window window{journal, "window"};
    platform::memory::TextBox txtIPAddress{journal, "txtIPAddress"};
    platform::memory::TextBox txtPortNumber{journal, "txtPortNumber"};
    platform::memory::DropDownList cboProtocol{journal, "cboProtocol"};
    platform::memory::DropDownList cboConnect{journal, "cboConnect"};
    platform::memory::CheckBox chkReconnect{journal, "chkReconnect"};
    platform::memory::CommandButton cmdApply;
    platform::memory::CommandButton cmdOpenDialogue;
    platform::memory::CommandButton cmdPlay;
    platform::memory::CommandButton cmdPause;
    platform::memory::CommandButton cmdClear;
    platform::memory::TextBox txtDBTime{journal, "txtDBTime"};
    platform::memory::TextBox txtTimerInterval{journal, "txtTimerInterval"};
    platform::memory::TextBox txtHeartbeat{journal, "txtHeartbeat"};
    platform::memory::TextBox txtFilePath{journal, "txtFilePath"};
    platform::memory::CheckBox chkTransferTime{journal, "chkTransferTime"};
    platform::memory::ListBox lstStatus{journal, "lstStatus"};
    platform::memory::ListBox DataViewList{journal, "DataViewList"};
    platform::memory::Timer tmrSendData{journal, "tmrSendData"};
    platform::memory::Winsock WinsockConnect{journal, "WinsockConnect"};
    platform::memory::Multicast MCSockConnect{journal, "MCSockConnect"};
    platform::memory::OpenFileDialog CommonDialogueDBFile{journal, "CommonDialogueDBFile"};
    platform::memory::DatabaseEngine engine{journal, "engine"};
    platform::memory::FileSystem files{journal, "files"};
    platform::memory::ProfileFile profile{journal, "profile"};
    platform::memory::EventQueue events{journal, "events"};
    platform::memory::Clock clock;
    platform::memory::PlainFormats formats;

private:
    trellivan::modGlobals globals_;
    trellivan::frmConnect form_;
    std::size_t statusTaken_ = 0;
};
