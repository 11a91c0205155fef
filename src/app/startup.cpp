#include <initializer_list>

#include "app/frm_connect.h"

namespace trellivan {

void frmConnect::Form_Load()  // continue
{
    PendingFailure pending;
    pending.Step([&] { window.SetCaption("Trellivan"); });
    globals_.GlobalsMain();
    DefaultSettings();
    LoadConfigSettings();
    InitializeDB();
    OpenTransport(pending);
    RecordIfPending(pending, "frmConnect.Form.Load");
}

void frmConnect::OpenTransport(PendingFailure& pending)
{
    // The list decides, not ProtocolName, which is still empty where no settings were found.
    if (pending.Test([&] { return ProtocolOf(cboProtocol.Text()) == Protocol::kMulticast; }))
        pending.Step([&] { OpenMulticastGroup(); });
    else
        SetWinsockSettings();
}

void frmConnect::DefaultSettings()  // continue
{
    PendingFailure pending;
    const auto addItems = [&](platform::DropDownList& list, std::initializer_list<const char*> items) {
        for (const auto* item : items)
            pending.Step([&] { list.AddItem(item); });
    };
    pending.Step([&] { tmrSendData.SetEnabled(false); });
    TimerInterval = 25;
    pending.Step([&] { tmrSendData.SetInterval(TimerInterval); });
    pending.Step([&] { txtIPAddress.SetText("127.0.0.1"); });
    pending.Step([&] { txtPortNumber.SetText("5015"); });
    addItems(cboProtocol, {"TCP", "UDP", "MCAST"});
    pending.Step([&] { cboProtocol.SetText("TCP"); });
    addItems(cboConnect, {"Listen", "Connect"});
    pending.Step([&] { cboConnect.SetText("Connect"); });
    pending.Step([&] { chkReconnect.SetValue(platform::CheckBox::kUnticked); });
    pending.Step([&] { txtFilePath.SetText(""); });
    FilePath.clear();
    pending.Step([&] { lstStatus.Clear(); });
    RecordIfPending(pending, "frmConfig.DefaultSettings");
}

}  // namespace trellivan
