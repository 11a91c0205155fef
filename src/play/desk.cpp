#include "play/desk.h"

#include <utility>

namespace player {

Desk::Desk(const Parts& parts, trellivan::ProgramPaths paths)
    : gate_(parts.gate),
      globals_(std::move(paths), parts.errors, parts.files, parts.settings, parts.clock, parts.formats),
      form_(
          trellivan::WindowControls{
              .window = window_,
              .txtIPAddress = txtIPAddress_,
              .txtPortNumber = txtPortNumber_,
              .cboProtocol = cboProtocol_,
              .cboConnect = cboConnect_,
              .chkReconnect = chkReconnect_,
              .cmdApply = cmdApply_,
              .cmdOpenDialogue = cmdOpenDialogue_,
              .cmdPlay = cmdPlay_,
              .cmdPause = cmdPause_,
              .cmdClear = cmdClear_,
              .txtDBTime = txtDBTime_,
              .txtTimerInterval = txtTimerInterval_,
              .txtHeartbeat = txtHeartbeat_,
              .txtFilePath = txtFilePath_,
              .chkTransferTime = chkTransferTime_,
              .lstStatus = lstStatus_,
              .DataViewList = DataViewList_,
              .tmrSendData = parts.timer,
              .WinsockConnect = parts.winsock,
              .MCSockConnect = parts.multicast,
              .CommonDialogueDBFile = dialog_,
          },
          globals_, parts.engine, parts.files, parts.events, parts.clock, parts.formats)
{
    lstStatus_.onLine = parts.onStatus;
}

void Desk::Load(bool transferTime)
{
    chkTransferTime_.SetValue(transferTime ? CheckBox::kTicked : CheckBox::kUnticked);
    gate_.Enter([this] { form_.Form_Load(); });
}

void Desk::Press(const CommandButton& button)
{
    gate_.Enter([&button] { button.OnClick(); });
}

}  // namespace player
