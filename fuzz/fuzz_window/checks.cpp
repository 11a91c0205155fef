#include "fuzz_window/checks.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QPixmapCache>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "end_to_end/qt_loop.h"
#include "fuzz_window/stage.h"
#include "support/peer.h"

/// Of the address sanitizer; g++ 12 has no header for it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace checks {
namespace {

using platform::window::ListBox;
using platform::window::MainWindow;

void Require(bool holds, const std::string& what)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
}

void Click(QAbstractButton& button)
{
    QTest::mouseClick(&button, Qt::LeftButton);
}

std::string LastLine(ListBox& list)
{
    QTest::keyClick(&list, Qt::Key_End);
    return list.SelectedText();
}

void ExpectStatus(MainWindow& window, const std::string& message)
{
    Require(qtLoop.WaitFor([&] { return LastLine(window.lstStatus).find(message) != std::string::npos; }),
            "no" + message + " but " + LastLine(window.lstStatus));
}

void OpenDatabase(MainWindow& window)
{
    QTimer::singleShot(0, &window, [] {
        QWidget* const dialog = QApplication::activeModalWidget();
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(stage::kDatabase));
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
    });
    Click(window.cmdOpenDialogue);
    ExpectStatus(window, "  Database Initialized");
}

void Play(MainWindow& window, const std::string& interval)
{
    window.txtTimerInterval.SetText(interval);
    Click(window.cmdPlay);
}

void PlaysStream(MainWindow& window, bool isServer)
{
    std::string all;
    for (const std::string& record : stage::Feed())
        all += record;
    Peer listener = Peer::Listening(qtLoop);
    if (!isServer)
        window.txtPortNumber.SetText(listener.PortText());
    Play(window, "0");  // no ticks: without a peer the records would be lost
    Peer peer = isServer ? Peer::ConnectTo(qtLoop, stage::kPort) : listener.Accepted();
    ExpectStatus(window, "  Connected to IP ");
    Play(window, "1");
    Require(peer.Receive(all.size()) == all, "the stream is not the feed");
    ExpectStatus(window, "  File Complete");
    Click(window.cmdClear);
    Require(peer.ReceiveAll().empty(), "the stream goes on after the feed");
}

void PlaysDatagrams(MainWindow& window, Peer receiver)
{
    window.txtPortNumber.SetText(receiver.PortText());
    Play(window, "1");
    for (const std::string& record : stage::Feed())
        Require(receiver.ReceiveDatagram() == record, "a datagram is not the record");
    ExpectStatus(window, "  File Complete");
    Require(!receiver.HasDatagram(), "there is a datagram after the feed");
    Click(window.cmdClear);
}

/// Position of the first date with which a record can begin, or the end.
std::size_t NextRecord(const std::string& log, std::size_t from)
{
    static const std::string kForm = "0000-00-00 00:00:00|";
    const auto fits = [](unsigned char character, char form) {
        return form == '0' ? std::isdigit(character) != 0 : character == form;
    };
    const auto begin = log.begin() + static_cast<std::ptrdiff_t>(from);
    return static_cast<std::size_t>(std::search(begin, log.end(), kForm.begin(), kForm.end(), fits) -
                                    log.begin());
}

std::size_t MemoryOfLines(ListBox& list)
{
    std::size_t bytes = LastLine(list).size();
    for (int line = list.SelectedLine(); line > 0; --line) {
        QTest::keyClick(&list, Qt::Key_Up);
        bytes += list.SelectedText().size() + sizeof(std::uint64_t);
        if (line % 500 == 0)
            QApplication::processEvents();  // or the watchdog wakes up
    }
    return bytes;
}

}  // namespace

void PlaysWholeFeed(MainWindow& window, Feed feed)
{
    const bool isGroup = feed == Feed::kGroup;
    const bool isStream = feed == Feed::kClient || feed == Feed::kServer;
    window.showNormal();
    window.txtIPAddress.SetText(isGroup ? "239.1.2.3" : "127.0.0.1");
    window.txtPortNumber.SetText(std::to_string(stage::kPort));
    window.cboProtocol.SetText(isStream ? "TCP" : isGroup ? "MCAST" : "UDP");
    window.cboConnect.SetText(feed == Feed::kServer ? "Listen" : "Connect");
    window.chkReconnect.SetValue(0);
    window.chkTransferTime.SetValue(0);
    Click(window.cmdClear);
    OpenDatabase(window);
    Click(window.cmdClear);
    if (isStream)
        PlaysStream(window, feed == Feed::kServer);
    else
        PlaysDatagrams(window, isGroup ? Peer::InGroup(qtLoop, "239.1.2.3") : Peer::Datagrams(qtLoop));
}

void LogIsWellFormed(const std::string& content)
{
    constexpr std::size_t kDateLength = 20;
    for (std::size_t begin = 0; begin < content.size();) {
        const std::size_t end = NextRecord(content, begin + 1);
        const std::string record = content.substr(begin, end - begin);
        const std::string procedure = record.substr(record.rfind('|') + 1);
        Require(NextRecord(record, 0) == 0 && record.ends_with("\r\n") &&
                    record.find_first_not_of("-0123456789", kDateLength) == record.find('|', kDateLength) &&
                    (procedure.starts_with("frmConnect.") || procedure.starts_with("modGlobals.")),
                "not a whole record: " + record.substr(0, 1000));
        begin = end;
    }
}

Usage UsageAtRest(MainWindow& window)
{
    QApplication::clipboard()->clear();
    QPixmapCache::clear();
    for (platform::window::TextBox* const box :
         {&window.txtIPAddress, &window.txtPortNumber, &window.txtTimerInterval})
        box->SetText("1");
    const std::size_t lines = MemoryOfLines(window.lstStatus);
    Require(qtLoop.ComesToRest(), "the event loop finds no rest");
    return {OpenDescriptors(), __sanitizer_get_current_allocated_bytes() - lines};
}

void NothingPiledUp(const Usage& before, const Usage& now)
{
    constexpr std::size_t kKeptByToolkit = std::size_t{8} << 20;  // glyphs, and the room of long texts
    Require(
        now.descriptors <= before.descriptors,
        std::to_string(now.descriptors) + " descriptors instead of " + std::to_string(before.descriptors));
    Require(now.bytes < before.bytes + kKeptByToolkit,
            std::to_string(now.bytes) + " bytes in use instead of " + std::to_string(before.bytes));
}

}  // namespace checks
