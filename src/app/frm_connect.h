#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "app/mod_globals.h"
#include "app/pending_failure.h"
#include "app/window_controls.h"
#include "platform/database.h"
#include "platform/date_time.h"
#include "platform/event_gate.h"
#include "platform/file_system.h"
#include "platform/regional_formats.h"
#include "transport/protocol.h"

namespace trellivan {

/// The main window's logic: its state and the handler of every event, each implemented in the room whose
/// concern it is. The constructor sets the handlers; after that Form_Load is the only call from outside.
/// It is made of its controls, so that handlers and controls go by their names alone.
///
/// Ownership: everything given is borrowed and must outlive this object; no event may arrive after it has
///            gone.
/// Failures:  a procedure is of one of two styles, named beside its definition: "abandon" (one try, ended by
///            the first failure, one record) or "continue" (each step through a PendingFailure, the last
///            failure recorded at the end).
class frmConnect : private WindowControls {
public:
    frmConnect(const WindowControls& controls, modGlobals& globals, platform::DatabaseEngine& engine,
               platform::FileSystem& files, platform::EventQueue& events, const platform::Clock& clock,
               const platform::RegionalFormats& formats);
    frmConnect(const frmConnect&) = delete;
    frmConnect& operator=(const frmConnect&) = delete;

    /// The start-up sequence. Once, before the window is shown.
    void Form_Load();

private:
    // app: start-up, status list, open file
    void DefaultSettings();
    void OpenTransport(PendingFailure& pending);
    void StatusLine(const std::string& line);
    void ShowStatus(const std::string& message);
    void cmdOpenDialogue_Click();

    // app: what all procedures share
    [[nodiscard]] std::string TimeOfDay() const;
    [[nodiscard]] std::int32_t WholeNumber(const std::string& text) const;
    [[nodiscard]] bool IsClientRole() const { return RoleOf(ConnectMode) == Role::kConnect; }
    [[nodiscard]] bool IsTcp() const { return ProtocolOf(ProtocolName) == Protocol::kTcp; }
    [[nodiscard]] bool IsMulticast() const { return ProtocolOf(ProtocolName) == Protocol::kMulticast; }
    void RecordAbandoned(const std::string& procedure);
    void Record(PendingFailure& pending, const std::string& description, const std::string& procedure);
    void RecordIfPending(PendingFailure& pending, const std::string& procedure);

    // config
    void LoadConfigSettings();
    void LoadInterval(PendingFailure& pending);
    void LoadReconnect(PendingFailure& pending);
    void LoadText(PendingFailure& pending, const std::string& section, const std::string& key,
                  platform::TextBox& box, std::string& variable);
    void LoadChoice(const std::string& key, platform::DropDownList& list, std::string& variable);
    void SaveConfigSettings();
    void cmdApply_Click();

    // source
    void InitializeDB();
    void RefuseDatabase(const std::string& message);
    [[nodiscard]] std::unique_ptr<platform::Database> OpenDatabaseOfType();
    [[nodiscard]] platform::RecordSet& Transactions();

    // transport
    void SetWinsockSettings();
    void ReadConnectionSettings();
    void SetWinsockTarget();
    void OpenLocalPort();
    void ShowListening();
    void OpenMulticastGroup();
    void WinsockConnect_Connect();
    void WinsockConnect_ConnectionRequest(platform::WinsockControl::RequestId request);
    void WinsockConnect_DataArrival();
    void WinsockConnect_Close();
    void WinsockConnect_Error(int number, const std::string& description);
    void MCSockConnect_Error();

    // replay
    void cmdPlay_Click();
    void cmdPause_Click();
    void cmdClear_Click();
    void ApplyInterval();
    [[nodiscard]] std::optional<double> AcceptedInterval(const std::string& text) const;
    void ConnectOrListen();
    void tmrSendData_Timer();
    [[nodiscard]] bool MakeSocketReady(PendingFailure& pending);
    void ReopenSocket(PendingFailure& pending);
    void ReportSocketState(PendingFailure& pending);
    [[nodiscard]] bool StopAtEnd(PendingFailure& pending);
    void SendCurrentRecord(PendingFailure& pending);
    void SendRecord(PendingFailure& pending, const std::string& recordText);
    void ShowRecordedTime();

    modGlobals& globals_;
    platform::DatabaseEngine& engine_;
    platform::FileSystem& files_;
    platform::EventQueue& events_;
    const platform::Clock& clock_;
    const platform::RegionalFormats& formats_;

    std::string ConnectMode;
    std::string IPAddress;  // remote address or multicast group
    std::string PortNumber;
    std::string ProtocolName;
    bool ReconnectOn = false;

    std::string FilePath;  // as chosen or configured; may be relative
    std::string FileType;  // "sdd" or "mdb" once a file with an accepted name was tried
    bool DBInitialized = false;
    std::unique_ptr<platform::Database> TransactionDB;
    std::unique_ptr<platform::RecordSet> TransactionSet;

    std::int16_t TimerInterval = 0;     // milliseconds
    std::int32_t RecordsSent = 0;       // records shown since the last Clear
    std::int32_t StatusLinesAdded = 0;  // index of the next line of lstStatus
};

}  // namespace trellivan
