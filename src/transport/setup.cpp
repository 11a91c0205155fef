#include "app/frm_connect.h"
#include "platform/conversions.h"

namespace trellivan {

using platform::WinsockControl;

namespace {

/// A multicast replay has its socket, too: by its state Play sees that the replay is connected.
WinsockControl::Protocol SocketProtocolFor(Protocol protocol)
{
    switch (protocol) {
        case Protocol::kTcp:
            return WinsockControl::Protocol::kTcp;
        case Protocol::kUdp:
        case Protocol::kMulticast:
            return WinsockControl::Protocol::kUdp;
    }
    return WinsockControl::Protocol::kUdp;
}

}  // namespace

/// In the role Listen it opens the port as well, so that a receiver can connect from the program's start on. Play closes
/// that port and opens it again: see ConnectOrListen.
void frmConnect::SetWinsockSettings()  // abandon
{
    try {
        cmdPause_Click();
        if (WinsockConnect.State() != WinsockControl::kClosed)
            WinsockConnect.Close();
        ReadConnectionSettings();
        WinsockConnect.SetProtocol(SocketProtocolFor(ProtocolOf(ProtocolName)));
        if (IsClientRole())
            SetWinsockTarget();
        else
            OpenLocalPort();
    } catch (...) {
        RecordAbandoned("frmConnect.SetWinsockSettings");
    }
}

void frmConnect::ReadConnectionSettings()
{
    if (const std::string address = txtIPAddress.Text(); !address.empty())
        IPAddress = address;
    if (const std::string port = txtPortNumber.Text(); formats_.Number(port)) {
        PortNumber = port;
    } else {
        PortNumber = "0";
        txtPortNumber.SetText(PortNumber);
    }
    ProtocolName = cboProtocol.Text();
    ConnectMode = cboConnect.Text();
    ReconnectOn = chkReconnect.Value() == platform::CheckBox::kTicked;
}

void frmConnect::SetWinsockTarget()
{
    WinsockConnect.SetRemoteHost(IPAddress);
    WinsockConnect.SetRemotePort(WholeNumber(PortNumber));
}

void frmConnect::OpenLocalPort()
{
    if (IsTcp()) {
        WinsockConnect.SetLocalPort(WholeNumber(PortNumber));
        WinsockConnect.Listen();
    } else {
        WinsockConnect.Bind(PortNumber);
    }
    ShowListening();
}

void frmConnect::OpenMulticastGroup()
{
    const std::string address = txtIPAddress.Text();
    MCSockConnect.OpenGroup(address, WholeNumber(txtPortNumber.Text()));
}

void frmConnect::ShowListening()
{
    ShowStatus("  Listening on Port " + PortNumber + "  ");
}

}  // namespace trellivan
