#include "app/frm_connect.h"
#include "config/settings.h"
#include "platform/conversions.h"

namespace trellivan {

void frmConnect::cmdPlay_Click()  // abandon
{
    try {
        ApplyInterval();
        if (WinsockConnect.State() != platform::WinsockControl::kConnected) {
            SetWinsockSettings();
            ConnectOrListen();
        }
        tmrSendData.SetEnabled(true);
    } catch (...) {
        IgnoringFailure([&] { tmrSendData.SetEnabled(false); });
        RecordAbandoned("frmConnect.cmdPlayPause");
    }
}

void frmConnect::cmdPause_Click()  // abandon
{
    try {
        ApplyInterval();
        tmrSendData.SetEnabled(false);
    } catch (...) {
        RecordAbandoned("frmConnect.cmdPause");
    }
}

void frmConnect::cmdClear_Click()  // continue
{
    PendingFailure pending;
    pending.Step([&] { tmrSendData.SetEnabled(false); });
    pending.Step([&] { Transactions().MoveFirst(); });
    pending.Step([&] { DataViewList.Clear(); });
    pending.Step([&] { WinsockConnect.Close(); });
    RecordsSent = 0;
    pending.Step([&] { ShowStatus("  Data Reset"); });
    RecordIfPending(pending, "frmConnect.cmdClear");
}

void frmConnect::ApplyInterval()
{
    const auto interval = AcceptedInterval(txtTimerInterval.Text());
    if (!interval)
        return;
    TimerInterval = platform::ToInteger<std::int16_t>(*interval, "Timer Speed");
    tmrSendData.SetInterval(TimerInterval);
}

std::optional<double> frmConnect::AcceptedInterval(const std::string& text) const
{
    const auto number = formats_.Number(text);
    if (!number || platform::RoundHalfToEven(*number) > kLongestInterval)
        return std::nullopt;
    return platform::RoundHalfToEven(*number);
}

/// The set-up only binds UDP (kOpen), and a tick sends only while the socket listens. So Play closes and listens, for TCP
/// too, where it only repeats the status line.
void frmConnect::ConnectOrListen()
{
    WinsockConnect.Close();
    if (IsClientRole()) {
        WinsockConnect.Connect();
    } else {
        WinsockConnect.Listen();
        ShowListening();
    }
}

}  // namespace trellivan
