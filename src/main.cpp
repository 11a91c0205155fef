#include <QApplication>
#include <QLocale>

#include "app/frm_connect.h"
#include "app/mod_globals.h"
#include "platform/event_gate.h"
#include "platform/files/file_system.h"
#include "platform/files/profile_file.h"
#include "platform/jet/engine.h"
#include "platform/qt/clock.h"
#include "platform/qt/event_queue.h"
#include "platform/qt/main_window.h"
#include "platform/qt/open_file_dialog.h"
#include "platform/qt/regional_formats.h"
#include "platform/qt/timer.h"
#include "platform/sockets/multicast.h"
#include "platform/sockets/winsock.h"

/// Builds the platform, then the logic that borrows it, and runs the event loop until the window closes.
int main(int argumentCount, char** arguments)
{
    const QApplication application(argumentCount, arguments);
    const std::string executableDirectory = QCoreApplication::applicationDirPath().toStdString();

    platform::EventGate gate;
    const platform::qt::Clock clock;
    const platform::qt::RegionalFormats formats{QLocale::system()};
    platform::files::DiskFileSystem files;
    platform::files::DiskProfileFile profile;
    platform::jet::Engine engine;

    platform::qt::MainWindow window(gate);
    platform::qt::OpenFileDialog dialog(window);
    platform::qt::Timer timer(gate);
    platform::qt::EventQueue events(gate, timer);
    platform::sockets::Winsock winsock(gate, formats);
    platform::sockets::Multicast multicast(gate);

    const trellivan::WindowControls controls{
        window,
        window.txtIPAddress,
        window.txtPortNumber,
        window.cboProtocol,
        window.cboConnect,
        window.chkReconnect,
        window.cmdApply,
        window.cmdOpenDialogue,
        window.cmdPlay,
        window.cmdPause,
        window.cmdClear,
        window.txtDBTime,
        window.txtTimerInterval,
        window.txtHeartbeat,
        window.txtFilePath,
        window.chkTransferTime,
        window.lstStatus,
        window.DataViewList,
        timer,
        winsock,
        multicast,
        dialog,
    };
    trellivan::modGlobals globals(executableDirectory, files, profile, clock, formats);
    trellivan::frmConnect form(controls, globals, engine, files, events, clock, formats);

    gate.Enter([&] { form.Form_Load(); });
    window.show();
    return QApplication::exec();
}
