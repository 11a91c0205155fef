#include "fuzz_window/checks.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cctype>
#include <stdexcept>

#include "fuzz_window/stage.h"
#include "sockets/event_loop.h"
#include "sockets/peer.h"

/// Of the address sanitizer; g++ 12 has no header for it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace checks {
namespace {

using platform::qt::ListBox;
using platform::qt::MainWindow;
using platform::sockets::Peer;
using platform::sockets::WaitFor;

void Require(bool holds, const std::string& what)
{
    if (!holds)
        throw std::runtime_error(what);
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

void OpenDatabase(MainWindow& window)
{
    QTimer::singleShot(0, &window, [] {
        QWidget* const dialog = QApplication::activeModalWidget();
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(stage::kDatabase));
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
    });
    Click(window.cmdOpenDialogue);
    Require(LastLine(window.lstStatus).ends_with("  Database Initialized"), "the database cannot be opened");
}

void Play(MainWindow& window, const std::string& interval)
{
    window.txtTimerInterval.SetText(interval);
    Click(window.cmdPlay);
}

/// The first Play has no ticks: without a peer the records would be lost.
Peer Connection(MainWindow& window, bool isServer)
{
    Peer listener = Peer::Listening();
    if (!isServer)
        window.txtPortNumber.SetText(listener.PortText());
    Play(window, "0");
    Peer connection = isServer ? Peer::ConnectTo(stage::kPort) : listener.Accepted();
    Require(
        WaitFor([&] { return LastLine(window.lstStatus).find("  Connected to IP ") != std::string::npos; }),
        "there is no connection");
    return connection;
}

void PlaysStream(MainWindow& window, bool isServer, const std::vector<std::string>& records)
{
    std::string all;
    for (const std::string& record : records)
        all += record;
    Peer connection = Connection(window, isServer);
    Play(window, "1");
    Require(connection.Receive(all.size()) == all, "the stream is not the feed");
    Require(WaitFor([&] { return LastLine(window.lstStatus).ends_with("  File Complete"); }),
            "there is no end");
    Click(window.cmdClear);
    Require(connection.ReceiveAll().empty(), "the stream goes on after the feed");
}

void PlaysDatagrams(MainWindow& window, Peer receiver, const std::vector<std::string>& records)
{
    window.txtPortNumber.SetText(receiver.PortText());
    Play(window, "1");
    for (const std::string& record : records)
        Require(receiver.ReceiveDatagram() == record, "a datagram is not the record");
    Require(WaitFor([&] { return LastLine(window.lstStatus).ends_with("  File Complete"); }),
            "there is no end");
    Require(!receiver.HasDatagram(), "there is a datagram after the feed");
}

/// Position of the first date at which a record can begin, or the end.
std::size_t NextRecord(const std::string& log, std::size_t from)
{
    static const std::string kForm = "0000-00-00 00:00:00|";
    const auto matches = [](char character, char form) {
        return form == '0' ? std::isdigit(static_cast<unsigned char>(character)) != 0 : character == form;
    };
    const auto found = std::search(log.begin() + static_cast<std::ptrdiff_t>(from), log.end(), kForm.begin(),
                                   kForm.end(), matches);
    return static_cast<std::size_t>(found - log.begin());
}

std::size_t StatusBytes(ListBox& list)
{
    std::size_t bytes = LastLine(list).size();
    for (int line = list.SelectedLine(); line > 0; --line) {
        QTest::keyClick(&list, Qt::Key_Up);
        bytes += list.SelectedText().size() + sizeof(std::uint64_t);
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
    OpenDatabase(window);
    Click(window.cmdClear);
    if (isStream)
        PlaysStream(window, feed == Feed::kServer, stage::Feed());
    else
        PlaysDatagrams(window, isGroup ? Peer::InGroup("239.1.2.3") : Peer::Datagrams(), stage::Feed());
    Click(window.cmdClear);
}

void LogIsWellFormed(const std::string& content)
{
    constexpr std::size_t kDateLength = 20;
    for (std::size_t begin = 0; begin < content.size();) {
        const std::size_t end = std::min(NextRecord(content, begin + 1), content.size());
        const std::string record = content.substr(begin, end - begin);
        const std::string procedure = record.substr(record.rfind('|') + 1);
        const bool isWhole =
            NextRecord(record, 0) == 0 && record.ends_with("\r\n") &&
            record.find_first_not_of("-0123456789", kDateLength) == record.find('|', kDateLength) &&
            (procedure.starts_with("frmConnect.") || procedure.starts_with("modGlobals."));
        Require(isWhole, "not a whole record: " + record.substr(0, 1000));
        begin = end;
    }
}

Usage AtRest(MainWindow& window)
{
    QApplication::clipboard()->clear();
    for (platform::qt::TextBox* const box :
         {&window.txtIPAddress, &window.txtPortNumber, &window.txtTimerInterval})
        box->SetText("1");
    const std::size_t lines = StatusBytes(window.lstStatus);
    Require(platform::sockets::ComesToRest(), "the event loop finds no rest");
    return {platform::sockets::OpenDescriptors(), __sanitizer_get_current_allocated_bytes() - lines};
}

void NothingWasKept(const Usage& before, MainWindow& window)
{
    constexpr std::size_t kGlyphsAndBlocks = std::size_t{2} << 20;
    const Usage now = AtRest(window);
    Require(WaitFor([&] { return platform::sockets::OpenDescriptors() == before.descriptors; }),
            std::to_string(platform::sockets::OpenDescriptors()) + " descriptors instead of " +
                std::to_string(before.descriptors));
    Require(now.bytes < before.bytes + kGlyphsAndBlocks,
            std::to_string(now.bytes) + " bytes in use instead of " + std::to_string(before.bytes));
}

}  // namespace checks
