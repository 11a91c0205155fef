#pragma once

#include <string>
#include <vector>

#include "app/frm_connect.h"
#include "platform/memory/clock_and_formats.h"
#include "platform/memory/components.h"
#include "platform/memory/controls.h"
#include "platform/memory/database.h"
#include "platform/memory/files.h"

using Texts = std::vector<std::string>;

/// The whole program over the in-memory platform, at 15:07:09 on 14 May 2021, with three records in its
/// database.
///
/// Its error log is strict: a record that no test has taken fails the test, so that "nothing was recorded" is
/// always checked.
class Program {
public:
    Program();
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Creates the settings file, so that starting records nothing about its absence.
    void HaveSettings() { files.contents["/house/Config.ini"] = ""; }

    /// Gives one setting a value.
    void Setting(const std::string& section, const std::string& key, const std::string& value);

    /// A database file at this path, named in the settings.
    void HaveDatabase(const std::string& path = "/data/shop.mdb");

    /// Starts with what there is.
    void Load() { form_.Form_Load(); }

    /// Starts with a settings file and, unless told otherwise, a database. What was recorded is left to take.
    void Start(bool withDatabase = true);

    /// Starts, plays, and has the peer's connection up.
    void StartConnected();

    /// Starts with the role or protocol chosen by the operator and taken by Play.
    void StartPlaying(const std::string& protocol, const std::string& role);

    void Tick() { tmrSendData.OnTimer(); }

    /// Messages of the status lines that were added since the last call, without their time.
    Texts TakeStatus();

    /// Records written since the last call, without their time: "number|description|procedure".
    Texts TakeRecords();

    /// The last "|"-separated field of each of TakeRecords().
    Texts TakeRecordNames();

    /// Calls since the last call of this or of journal.Clear(), on one object.
    Texts TakeCalls(const std::string& object);

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

/// One record of the in-memory database, with its recorded time on 14 May 2021.
platform::memory::Row Transaction(int ref, const std::string& text, const std::string& time);
