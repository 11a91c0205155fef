#include "config/settings.h"

#include <limits>
#include <string>
#include <vector>

#include "app/frm_connect.h"
#include "platform/conversions.h"

namespace trellivan {
namespace {

using platform::CheckBox;
using platform::ToInteger;
using platform::ToNumber;

/// The key of the file's path as it is read, and as the error log names it. It is written as keys::kFilePath.
constexpr const char* kFilePathRead = "Filepath";

}  // namespace

void frmConnect::LoadConfigSettings()  // continue
{
    PendingFailure pending;
    if (pending.Test([&] { return !files_.FileExists(globals_.ConfigFilePath()); })) {
        pending.Step([&] { ShowStatus("  Config.ini is Not Found" + globals_.ConfigFilePath()); });
        Record(pending, "Config.ini File not found! ", "frmConnect.LoadConfigSettings");
        return;
    }
    LoadInterval(pending);
    LoadText(pending, keys::kConnection, keys::kAddress, txtIPAddress, IPAddress);
    LoadText(pending, keys::kConnection, keys::kPort, txtPortNumber, PortNumber);
    LoadChoice(keys::kRole, cboConnect, ConnectMode);
    LoadChoice(keys::kProtocol, cboProtocol, ProtocolName);
    LoadReconnect(pending);
    LoadText(pending, keys::kDatabase, kFilePathRead, txtFilePath, FilePath);
    RecordIfPending(pending, "frmConnect.LoadConfigSettings");
}

void frmConnect::LoadInterval(PendingFailure& pending)
{
    const std::string text = globals_.ReadINIText(keys::kTimer, keys::kInterval);
    const auto interval = AcceptedInterval(text);
    if (!interval || *interval < std::numeric_limits<std::int16_t>::min()) {
        Record(pending, "Timer Interval is incorrect: " + text,
               "frmConnect.LoadConfigSettings.TimerInterval");
        return;
    }
    TimerInterval = ToInteger<std::int16_t>(*interval);
    pending.Step([&] { txtTimerInterval.SetText(std::to_string(TimerInterval)); });
    pending.Step([&] { tmrSendData.SetInterval(TimerInterval); });
}

void frmConnect::LoadText(PendingFailure& pending, const std::string& section, const std::string& key,
                          platform::TextBox& box, std::string& variable)
{
    const std::string text = globals_.ReadINIText(section, key);
    if (text.empty())
        return;
    pending.Step([&] { box.SetText(text); });
    variable = text;
}

/// A text that the list refuses is no failure of the load: the variable takes it, the list keeps its item, and there is
/// no record.
void frmConnect::LoadChoice(const std::string& key, platform::DropDownList& list, std::string& variable)
{
    const std::string text = globals_.ReadINIText(keys::kConnection, key);
    if (text.empty())
        return;
    IgnoringFailure([&] { list.SetText(text); });
    variable = text;
}

void frmConnect::LoadReconnect(PendingFailure& pending)
{
    const std::string text = globals_.ReadINIText(keys::kConnection, keys::kReconnect);
    if (text.empty())
        return;
    ReconnectOn = platform::UpperCase(text) == "YES";
    pending.Step([&] { chkReconnect.SetValue(ReconnectOn ? CheckBox::kTicked : CheckBox::kUnticked); });
}

void frmConnect::SaveConfigSettings()  // continue
{
    PendingFailure pending;
    if (pending.Test([&] { return !files_.FileExists(globals_.ConfigFilePath()); })) {
        pending.Step([&] { ShowStatus("  Config.ini File not Found"); });
        Record(pending, pending.Description(), "frmConnect.SaveConfigSettings");
        return;
    }
    std::vector<platform::ProfileEntry> entries;
    const auto add = [&](const char* section, const char* key, const auto& textOf) {
        pending.Step([&] { entries.push_back({section, key, textOf()}); });
    };
    const auto addAndTake = [&](const char* key, const auto& control, std::string& variable) {
        add(keys::kConnection, key, [&] { return control.Text(); });
        pending.Step([&] { variable = control.Text(); });
    };
    add(keys::kTimer, keys::kInterval, [&] { return txtTimerInterval.Text(); });
    // The timer is not told: Play and Pause do that, and hold the number against the longest interval first.
    pending.Step([&] {
        constexpr const char* kWhat = "Timer Speed";
        TimerInterval = ToInteger<std::int16_t>(ToNumber(txtTimerInterval.Text(), formats_, kWhat), kWhat);
    });
    addAndTake(keys::kAddress, txtIPAddress, IPAddress);
    addAndTake(keys::kPort, txtPortNumber, PortNumber);
    addAndTake(keys::kProtocol, cboProtocol, ProtocolName);
    addAndTake(keys::kRole, cboConnect, ConnectMode);
    // A failing test counts as passed, here as everywhere: then Reconnect is on.
    const bool reconnect = pending.Test([&] { return chkReconnect.Value() == CheckBox::kTicked; });
    add(keys::kConnection, keys::kReconnect, [&] { return reconnect ? "YES" : "NO"; });
    ReconnectOn = reconnect;
    add(keys::kDatabase, keys::kFilePath, [&] { return FilePath; });
    pending.Step([&] { globals_.WriteINIValues(entries); });
    pending.Step([&] { ShowStatus("  Settings saved"); });
    RecordIfPending(pending, "frmConnect.SaveConfigSettings");
}

/// Clears first, because Play keeps the settings of a connection that is there: without one the next Play takes the new.
void frmConnect::cmdApply_Click()  // no failure handling of its own: both steps have theirs
{
    cmdClear_Click();
    SaveConfigSettings();
}

}  // namespace trellivan
