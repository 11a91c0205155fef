#include "window/trellivan.h"

namespace {

trellivan::ProgramPaths PathsIn(const std::string& directory)
{
    return {.configFile = directory + "/Config.ini",
            .errorLogFile = directory + "/Trellivan Error.log",
            .folder = directory};
}

}  // namespace

Trellivan::Trellivan(const std::string& executableDirectory, const QLocale& locale)
    : machine_(locale),
      globals_(PathsIn(executableDirectory), errorLog_, machine_.files, machine_.profile, machine_.clock,
               machine_.formats),
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
              .tmrSendData = till_.timer,
              .WinsockConnect = till_.winsock,
              .MCSockConnect = till_.multicast,
              .CommonDialogueDBFile = dialog_,
          },
          globals_, machine_.engine, machine_.files, till_.events, machine_.clock, machine_.formats)
{}

void Trellivan::Start()
{
    till_.gate.Enter([this] { form_.Form_Load(); });
    window_.show();
}
