#pragma once

#include <QLocale>
#include <string>

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

/// The whole program: the platform's objects, then the logic that borrows them. The one place that knows both
/// sides. It needs a QApplication around it.
class Trellivan {
public:
    /// `executableDirectory` is where the settings file and the error log lie.
    Trellivan(const std::string& executableDirectory, const QLocale& locale);
    Trellivan(const Trellivan&) = delete;
    Trellivan& operator=(const Trellivan&) = delete;

    /// Runs the start-up sequence and shows the window. Once.
    void Start();

    [[nodiscard]] platform::qt::MainWindow& Window() { return window_; }

private:
    platform::EventGate gate_;
    platform::qt::Clock clock_;
    platform::qt::RegionalFormats formats_;
    platform::files::DiskFileSystem files_;
    platform::files::DiskProfileFile profile_;
    platform::jet::Engine engine_;

    platform::qt::MainWindow window_{gate_};
    platform::qt::OpenFileDialog dialog_{window_};
    platform::qt::Timer timer_{gate_};
    platform::qt::EventQueue events_{gate_, timer_};
    platform::sockets::Winsock winsock_{gate_, formats_};
    platform::sockets::Multicast multicast_{gate_};

    trellivan::modGlobals globals_;
    trellivan::frmConnect form_;
};
