#include "app/frm_connect.h"
#include "platform/conversions.h"
#include "replay/record_format.h"

namespace trellivan {

using platform::WinsockControl;

void frmConnect::tmrSendData_Timer()  // continue; a tick that ends early records nothing
{
    PendingFailure pending;
    if (!DBInitialized)
        return;
    if (!TransactionSet)
        InitializeDB();
    if (!IsMulticast() && !MakeSocketReady(pending))
        return;
    if (pending.Test([&] { return Transactions().RecordCount() > 0; })) {
        if (StopAtEnd(pending))
            return;
        SendCurrentRecord(pending);
    }
    RecordIfPending(pending, "frmConnect.tmrSendData");
}

/// Opens the socket anew where it is neither connected nor listening. True when the tick may send.
bool frmConnect::MakeSocketReady(PendingFailure& pending)
{
    platform::SocketState savedState = WinsockControl::kClosed;
    pending.Step([&] { savedState = WinsockConnect.State(); });
    if (savedState == WinsockControl::kListening || savedState == WinsockControl::kConnected)
        return true;
    ReopenSocket(pending);
    if (pending.Test([&] { return WinsockConnect.State() == WinsockControl::kConnecting; }))
        return false;
    const bool unusable = pending.Test([&] {
        const bool connected = WinsockConnect.State() == WinsockControl::kConnected;
        const bool listening = WinsockConnect.State() == WinsockControl::kListening;
        return !connected && !listening;
    });
    if (unusable)
        ReportSocketState(pending);
    return !unusable;
}

void frmConnect::ReopenSocket(PendingFailure& pending)
{
    // This gives up an attempt that is still under way: each has one interval.
    pending.Step([&] { WinsockConnect.Close(); });
    pending.Step([&] { events_.ProcessPending(); });
    if (ReconnectOn && IsClientRole()) {
        pending.Step([&] { WinsockConnect.Connect(IPAddress, PortNumber); });
        pending.Step([&] { ShowStatus("   Connecting to "); });
    } else if (ReconnectOn) {
        pending.Step([&] { WinsockConnect.Listen(); });
        pending.Step([&] { ShowListening(); });
    }
    pending.Step([&] { events_.ProcessPending(); });
}

void frmConnect::ReportSocketState(PendingFailure& pending)
{
    pending.Step([&] {
        const auto state = static_cast<int>(WinsockConnect.State());
        ShowStatus(" Error with Winsock State: " + std::to_string(state));
    });
    pending.Step([&] { tmrSendData.SetEnabled(false); });
}

/// True, with the replay stopped, when the last record has been sent.
bool frmConnect::StopAtEnd(PendingFailure& pending)
{
    if (!pending.Test([&] { return Transactions().AtEOF(); }))
        return false;
    pending.Step([&] { ShowStatus("  File Complete"); });
    pending.Step([&] { tmrSendData.SetEnabled(false); });
    return true;
}

void frmConnect::SendCurrentRecord(PendingFailure& pending)
{
    std::string recordText;
    pending.Step([&] { recordText = ToText(Transactions().Field("rawtransaction"), formats_); });
    pending.Step([&] { DataViewList.AddItem(recordText); });
    SendRecord(pending, recordText);
    pending.Step([&] { ShowRecordedTime(); });
    pending.Step([&] { DataViewList.SetListIndex(RecordsSent); });
    pending.Step([&] { RecordsSent = platform::Successor(RecordsSent); });
    pending.Step([&] { Transactions().MoveNext(); });
}

void frmConnect::SendRecord(PendingFailure& pending, const std::string& recordText)
{
    if (IsMulticast()) {
        pending.Step([&] {
            const auto bytes = StringToBytes(recordText);
            MCSockConnect.SendToGroup(bytes, IPAddress, WholeNumber(PortNumber));
        });
    } else if (pending.Test([&] { return chkTransferTime.Value() == platform::CheckBox::kTicked; })) {
        pending.Step([&] {
            WinsockConnect.SendData(
                WithRecordedTime(recordText, Transactions().Field("timestamp"), formats_));
        });
    } else {
        pending.Step([&] { WinsockConnect.SendData(recordText); });
    }
}

void frmConnect::ShowRecordedTime()
{
    if (platform::UpperCase(FileType) == "SDD")
        txtDBTime.SetText(LongTimeText(Transactions().Field("datetimestamp"), formats_));
    else
        txtDBTime.SetText(ToText(Transactions().Field("timestamp"), formats_));
}

}  // namespace trellivan
