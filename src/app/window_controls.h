#pragma once

#include "platform/controls.h"
#include "platform/multicast_control.h"
#include "platform/timer.h"
#include "platform/winsock_control.h"

namespace trellivan {

/// Everything that stands in the main window, borrowed from the platform: it must outlive its user.
struct WindowControls {
    platform::Window& window;

    platform::TextBox& txtIPAddress;
    platform::TextBox& txtPortNumber;
    platform::DropDownList& cboProtocol;
    platform::DropDownList& cboConnect;
    platform::CheckBox& chkReconnect;
    platform::CommandButton& cmdApply;

    platform::CommandButton& cmdOpenDialogue;
    platform::CommandButton& cmdPlay;
    platform::CommandButton& cmdPause;
    platform::CommandButton& cmdClear;
    platform::TextBox& txtDBTime;
    platform::TextBox& txtTimerInterval;
    platform::TextBox& txtHeartbeat;
    platform::TextBox& txtFilePath;
    platform::CheckBox& chkTransferTime;
    platform::ListBox& lstStatus;
    platform::ListBox& DataViewList;

    platform::Timer& tmrSendData;
    platform::WinsockControl& WinsockConnect;
    platform::MulticastControl& MCSockConnect;
    platform::OpenFileDialog& CommonDialogueDBFile;
};

}  // namespace trellivan
