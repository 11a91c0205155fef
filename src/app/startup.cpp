#include "app/frm_connect.h"
#include "config/settings.h"

namespace trellivan {

using platform::CheckBox;

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
    const auto addNames = [&](platform::DropDownList& list, const auto& choices) {
        for (const auto choice : choices)
            pending.Step([&] { list.AddItem(NameOf(choice)); });
    };
    pending.Step([&] { tmrSendData.SetEnabled(false); });
    TimerInterval = built_in::kInterval;
    pending.Step([&] { tmrSendData.SetInterval(TimerInterval); });
    pending.Step([&] { txtIPAddress.SetText(built_in::kAddress); });
    pending.Step([&] { txtPortNumber.SetText(built_in::kPort); });
    addNames(cboProtocol, kProtocols);
    pending.Step([&] { cboProtocol.SetText(NameOf(built_in::kProtocol)); });
    addNames(cboConnect, kRoles);
    pending.Step([&] { cboConnect.SetText(NameOf(built_in::kRole)); });
    pending.Step(
        [&] { chkReconnect.SetValue(built_in::kReconnect ? CheckBox::kTicked : CheckBox::kUnticked); });
    pending.Step([&] { txtFilePath.SetText(""); });
    FilePath.clear();
    pending.Step([&] { lstStatus.Clear(); });
    RecordIfPending(pending, "frmConfig.DefaultSettings");
}

}  // namespace trellivan
