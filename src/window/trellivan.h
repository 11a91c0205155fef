#pragma once

#include <QLocale>
#include <string>

#include "app/frm_connect.h"
#include "app/mod_globals.h"
#include "errorlog/error_log_file.h"
#include "machine.h"
#include "platform/posix/tick_schedule.h"
#include "platform/window/loop_bridge.h"
#include "platform/window/main_window.h"
#include "platform/window/open_file_dialog.h"

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

    [[nodiscard]] platform::window::MainWindow& Window() { return window_; }

private:
    Machine machine_;
    platform::posix::TickSchedule schedule_;
    platform::window::LoopBridge bridge_{machine_.loop};
    TillMachine till_{machine_, schedule_, [this] { bridge_.RunPass(); }};
    platform::window::MainWindow window_{till_.gate};
    platform::window::OpenFileDialog dialog_{window_};

    trellivan::ErrorLogFile errorLog_{machine_.files, machine_.clock, machine_.formats};
    trellivan::modGlobals globals_;
    trellivan::frmConnect form_;
};
