#pragma once

#include <string>

#include "app/frm_connect.h"
#include "app/mod_globals.h"
#include "machine.h"
#include "play/controls.h"

namespace player {

/// The logic of one till over controls without a window, and the hand on its buttons.
class Desk {
public:
    /// What differs from till to till, and stands around what the machine has. All of it outlives the desk.
    struct Parts {
        platform::EventGate& gate;
        platform::Timer& timer;
        platform::WinsockControl& winsock;
        platform::MulticastControl& multicast;
        platform::EventQueue& events;
        platform::DatabaseEngine& engine;
        platform::FileSystem& files;
        platform::ProfileFile& settings;
        platform::ErrorLog& errors;
        const platform::Clock& clock;
        const platform::RegionalFormats& formats;
        std::function<void(const std::string& line)> onStatus;  // may be empty
    };

    Desk(const Parts& parts, trellivan::ProgramPaths paths);
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    /// Runs the start-up sequence. Once.
    void Load(bool transferTime);

    /// As a click, they take effect now or when the handler that runs has ended.
    void PressPlay() { Press(cmdPlay_); }
    void PressPause() { Press(cmdPause_); }

private:
    void Press(const CommandButton& button);

    platform::EventGate& gate_;

    Window window_;
    TextBox txtIPAddress_;
    TextBox txtPortNumber_;
    DropDownList cboProtocol_;
    DropDownList cboConnect_;
    CheckBox chkReconnect_;
    CommandButton cmdApply_;
    CommandButton cmdOpenDialogue_;
    CommandButton cmdPlay_;
    CommandButton cmdPause_;
    CommandButton cmdClear_;
    TextBox txtDBTime_;
    TextBox txtTimerInterval_;
    TextBox txtHeartbeat_;
    TextBox txtFilePath_;
    CheckBox chkTransferTime_;
    ListBox lstStatus_;
    ListBox DataViewList_;
    OpenFileDialog dialog_;

    trellivan::modGlobals globals_;
    trellivan::frmConnect form_;
};

}  // namespace player
