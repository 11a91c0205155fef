#include "app/frm_connect.h"

namespace trellivan {

void frmConnect::WinsockConnect_Connect()  // abandon
{
    try {
        if (IsClientRole())
            ShowStatus("  Connected to IP " + IPAddress + "  ");
        else
            ShowStatus("  Connected on Port " + PortNumber + "  ");
    } catch (...) {
        RecordAbandoned("frmConnect.WinsockConnect.Connect");
        IgnoringFailure([&] { tmrSendData.SetEnabled(false); });
    }
}

void frmConnect::WinsockConnect_ConnectionRequest(platform::WinsockControl::RequestId request)  // continue
{
    PendingFailure pending;
    pending.Step([&] { WinsockConnect.Close(); });
    pending.Step([&] { WinsockConnect.Accept(request); });
    pending.Step([&] { ShowStatus("  Connected to IP " + IPAddress + "  on Port " + PortNumber + "  "); });
    RecordIfPending(pending, "frmConnect.WinsockConnect.ConnectionRequest");
}

void frmConnect::WinsockConnect_DataArrival()  // no handling of its own: a failure ends at the event gate
{
    static_cast<void>(WinsockConnect.GetData());
    txtHeartbeat.SetText(TimeOfDay());
}

void frmConnect::WinsockConnect_Close()  // abandon
{
    try {
        ShowStatus("  Connection Closed");
        WinsockConnect.Close();
        if (!IsClientRole()) {
            ShowListening();
            WinsockConnect.Listen();
        }
    } catch (...) {
        RecordAbandoned("frmConnect.WinsockConnect.Close");
        IgnoringFailure([&] { ShowStatus(" Error in Closing Winsock Connection"); });
        IgnoringFailure([&] { tmrSendData.SetEnabled(false); });
    }
}

void frmConnect::WinsockConnect_Error(int number, const std::string& description)  // continue
{
    PendingFailure pending;
    globals_.WriteErrorLog(platform::Failure(number, description), "frmConnect.WinsockConnect.Error");
    pending.Step([&] { ShowStatus("  Error Occured... Connection Lost"); });
    pending.Step([&] { WinsockConnect.Close(); });
    if (!IsClientRole()) {
        pending.Step([&] { WinsockConnect.Listen(); });
        // Not ShowListening: the line that follows an error ends without blanks.
        pending.Step([&] { ShowStatus("  Listening on Port " + PortNumber); });
    } else if (ReconnectOn) {
        pending.Step([&] { ShowStatus("  Reconnecting to IP " + IPAddress + "  "); });
        // The set-up stops the replay too: after an error it waits for Play.
        SetWinsockSettings();
        pending.Step([&] { WinsockConnect.Connect(); });
    }
    // Saving also takes over what the boxes say: Reconnect counts from here on, where no set-up has read it too.
    SaveConfigSettings();
    RecordIfPending(pending, "frmConnect.WinsockConnect.Error");
}

void frmConnect::MCSockConnect_Error()  // continue
{
    PendingFailure pending;
    pending.Step([&] {
        ShowStatus(" Error on Multicast Sock on " + txtIPAddress.Text() + " : " + txtPortNumber.Text());
    });
    pending.Step([&] { MCSockConnect.CloseGroup(); });
    if (pending.Test([&] { return chkReconnect.Value() == platform::CheckBox::kTicked; }))
        pending.Step([&] { OpenMulticastGroup(); });
    RecordIfPending(pending, "frmConnect.MCSockConnect.Error");
}

}  // namespace trellivan
