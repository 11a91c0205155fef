#include "trellivan.h"

Trellivan::Trellivan(const std::string& executableDirectory, const QLocale& locale)
    : formats_(locale),
      globals_(executableDirectory, files_, profile_, clock_, formats_),
      form_(
          trellivan::WindowControls{
              .window = window_,
              .txtIPAddress = window_.txtIPAddress,
              .txtPortNumber = window_.txtPortNumber,
              .cboProtocol = window_.cboProtocol,
              .cboConnect = window_.cboConnect,
              .chkReconnect = window_.chkReconnect,
              .cmdApply = window_.cmdApply,
              .cmdOpenDialogue = window_.cmdOpenDialogue,
              .cmdPlay = window_.cmdPlay,
              .cmdPause = window_.cmdPause,
              .cmdClear = window_.cmdClear,
              .txtDBTime = window_.txtDBTime,
              .txtTimerInterval = window_.txtTimerInterval,
              .txtHeartbeat = window_.txtHeartbeat,
              .txtFilePath = window_.txtFilePath,
              .chkTransferTime = window_.chkTransferTime,
              .lstStatus = window_.lstStatus,
              .DataViewList = window_.DataViewList,
              .tmrSendData = timer_,
              .WinsockConnect = winsock_,
              .MCSockConnect = multicast_,
              .CommonDialogueDBFile = dialog_,
          },
          globals_, engine_, files_, events_, clock_, formats_)
{}

void Trellivan::Start()
{
    gate_.Enter([this] { form_.Form_Load(); });
    window_.show();
}
