#pragma once

#include <QFrame>
#include <QWidget>
#include <string>

#include "platform/controls.h"
#include "platform/event_gate.h"
#include "platform/window/controls.h"
#include "platform/window/list_box.h"

namespace platform::window {

/// The program's window: every control at its fixed place, under its own name. It decides nothing.
///
/// Places and sizes are given in twips, 15 to a pixel at 96 dots per inch, and scale with the display.
class MainWindow final : public QWidget, public platform::Window {
public:
    /// Clicks enter the gate, which outlives the window.
    explicit MainWindow(EventGate& gate);

    void SetCaption(const std::string& caption) override;

private:
    QFrame Frame1{this};  ///< Before the controls that it holds.

public:
    TextBox txtIPAddress{&Frame1};
    TextBox txtPortNumber{&Frame1};
    DropDownList cboProtocol{&Frame1};
    DropDownList cboConnect{&Frame1};
    CheckBox chkReconnect{&Frame1};
    CommandButton cmdApply;

    CommandButton cmdOpenDialogue;
    CommandButton cmdPlay;
    CommandButton cmdPause;
    CommandButton cmdClear;
    DisplayBox txtDBTime{this};
    TextBox txtTimerInterval{this};
    DisplayBox txtHeartbeat{this};
    DisplayBox txtFilePath{this};
    CheckBox chkTransferTime{this};
    ListBox lstStatus{this};
    ListBox DataViewList{this, ListBox::ToolTips::kReceipts};

private:
    void PlaceInputs();
    void PlaceLabels();
    void ChooseFont();
};

}  // namespace platform::window
