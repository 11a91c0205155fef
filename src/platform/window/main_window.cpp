#include "platform/window/main_window.h"

#include <QIcon>
#include <QLabel>

#include "platform/window/caption_font.h"
#include "platform/window/text.h"

/// The icons stand in a static library, whose resources must be asked for; the macro works outside namespaces
/// only.
static void LoadResources()
{
    Q_INIT_RESOURCE(trellivan);
}

namespace platform::window {
namespace {

constexpr int kTwipsPerPixel = 15;

/// Left, top, width and height in twips.
struct Place {
    int left;
    int top;
    int width;
    int height;
};

void SetPlace(QWidget& widget, const Place& place)
{
    widget.setGeometry(place.left / kTwipsPerPixel, place.top / kTwipsPerPixel, place.width / kTwipsPerPixel,
                       place.height / kTwipsPerPixel);
}

}  // namespace

MainWindow::MainWindow(EventGate& gate)
    : cmdApply(&Frame1, gate),
      cmdOpenDialogue(this, gate),
      cmdPlay(this, gate),
      cmdPause(this, gate),
      cmdClear(this, gate)
{
    LoadResources();
    QIcon icon;
    icon.addFile(QStringLiteral(":/icons/trellivan-32.png"));
    icon.addFile(QStringLiteral(":/icons/trellivan-16.png"));
    setWindowIcon(icon);
    setObjectName(QStringLiteral("frmConnect"));
    SetCaption("Trellivan");
    setFixedSize(10875 / kTwipsPerPixel, 3945 / kTwipsPerPixel);

    Frame1.setObjectName(QStringLiteral("Frame1"));
    Frame1.setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    SetPlace(Frame1, {120, 120, 5415, 1815});
    PlaceInputs();
    PlaceLabels();
    ChooseFont();
    txtTimerInterval.setTextMargins(-2, 0, -2, 0);  // so that five digits show in its narrow place
    cmdOpenDialogue.setFocus();
}

void MainWindow::SetCaption(const std::string& caption)
{
    setWindowTitle(ToQt(caption));
}

void MainWindow::PlaceInputs()
{
    struct Input {
        QWidget& widget;
        const char* name;
        const char* title;  // a button's caption, and what a screen reader calls the control
        Place place;        // relative to the window, or to the frame that holds it
    };
    // In the order in which the focus moves through them.
    const Input inputs[] = {
        {cmdOpenDialogue, "cmdOpenDialogue", "Open File", {120, 2040, 975, 375}},
        {cmdPlay, "cmdPlay", "Play", {5640, 2760, 975, 375}},
        {cmdPause, "cmdPause", "Pause", {6840, 2760, 855, 375}},
        {cmdClear, "cmdClear", "Clear", {7920, 2760, 975, 375}},
        {txtIPAddress, "txtIPAddress", "IP Address", {1320, 240, 2055, 285}},
        {txtPortNumber, "txtPortNumber", "Port Number", {1320, 600, 855, 285}},
        {cboProtocol, "cboProtocol", "Protocol", {1320, 960, 2055, 315}},
        {cboConnect, "cboConnect", "Connection", {1320, 1320, 2055, 315}},
        {chkReconnect, "chkReconnect", "Reconnect", {4200, 240, 1095, 255}},
        {cmdApply, "cmdApply", "Apply", {4320, 1320, 975, 375}},
        {txtTimerInterval, "txtTimerInterval", "Timer Speed", {5040, 2040, 495, 285}},
        {DataViewList, "DataViewList", "Data Sent", {5640, 120, 4695, 2595}},
        {txtFilePath, "txtFilePath", "File Path", {960, 3600, 7935, 285}},
        {txtDBTime, "txtDBTime", "DB Time", {2760, 2040, 1215, 285}},
        {lstStatus, "lstStatus", "Status", {960, 2880, 4575, 645}},
        {chkTransferTime, "chkTransferTime", "Transfer Time", {4080, 2400, 1455, 255}},
        {txtHeartbeat, "txtHeartbeat", "Last Heartbeat", {2400, 2520, 1335, 285}},
    };
    QWidget* previous = nullptr;
    for (const Input& input : inputs) {
        const QString title = QString::fromLatin1(input.title);
        input.widget.setObjectName(QString::fromLatin1(input.name));
        input.widget.setAccessibleName(title);
        if (auto* const button = qobject_cast<QAbstractButton*>(&input.widget))
            button->setText(title);
        SetPlace(input.widget, input.place);
        if (previous != nullptr)
            setTabOrder(previous, &input.widget);
        previous = &input.widget;
    }
}

void MainWindow::PlaceLabels()
{
    struct Label {
        const char* name;
        const char* caption;
        QWidget& input;  // what it labels; it stands in the same frame
        Place place;
    };
    const Label labels[] = {
        {"lblIpAddress", "IP Address:", txtIPAddress, {120, 240, 855, 255}},
        {"lblPortNumber", "Port Number:", txtPortNumber, {120, 600, 975, 255}},
        {"lblProtocol", "Protocol:", cboProtocol, {120, 960, 735, 255}},
        {"lblConnection", "Connection:", cboConnect, {120, 1320, 975, 255}},
        {"lblTime", "DB Time:", txtDBTime, {2040, 2040, 735, 255}},
        {"lblTmrInterval", "Timer Speed:", txtTimerInterval, {4080, 2040, 975, 255}},
        {"Label1", "Last Heartbeat", txtHeartbeat, {960, 2520, 1215, 255}},
        {"lblStatus", "Status:", lstStatus, {120, 2880, 615, 255}},
        {"lblPath", "File Path:", txtFilePath, {120, 3600, 855, 255}},
    };
    for (const Label& row : labels) {
        auto* const label = new QLabel(QString::fromLatin1(row.caption), row.input.parentWidget());
        label->setObjectName(QString::fromLatin1(row.name));
        label->setTextFormat(Qt::PlainText);
        label->setBuddy(&row.input);
        label->setContentsMargins(0, 2, 0, 0);  // the caption on one line with the text in its box
        SetPlace(*label, row.place);
    }
}

void MainWindow::ChooseFont()
{
    std::vector<Caption> captions;
    for (const QLabel* const label : findChildren<QLabel*>())
        captions.push_back(CaptionOf(*label));
    for (const QAbstractButton* const button : findChildren<QAbstractButton*>())
        captions.push_back(CaptionOf(*button));
    setFont(FontThatFits(font(), captions));
}

}  // namespace platform::window
