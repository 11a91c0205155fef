#include "trellivan.h"

Trellivan::Trellivan(const std::string& executableDirectory, const QLocale& locale)
    : formats_(locale),
      globals_(executableDirectory, files_, profile_, clock_, formats_),
      form_(
          trellivan::WindowControls{
              window_,
              window_.txtIPAddress,
              window_.txtPortNumber,
              window_.cboProtocol,
              window_.cboConnect,
              window_.chkReconnect,
              window_.cmdApply,
              window_.cmdOpenDialogue,
              window_.cmdPlay,
              window_.cmdPause,
              window_.cmdClear,
              window_.txtDBTime,
              window_.txtTimerInterval,
              window_.txtHeartbeat,
              window_.txtFilePath,
              window_.chkTransferTime,
              window_.lstStatus,
              window_.DataViewList,
              timer_,
              winsock_,
              multicast_,
              dialog_,
          },
          globals_, engine_, files_, events_, clock_, formats_)
{}

void Trellivan::Start()
{
    gate_.Enter([this] { form_.Form_Load(); });
    window_.show();
}
