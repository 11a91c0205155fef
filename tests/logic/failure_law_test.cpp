#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>

#include "logic/program.h"

/// The two failure styles as a law: every call that a procedure makes is made to fail, one in each run, and
/// what else ran and what was recorded is compared with the undisturbed run.
namespace {

/// Calls are named in full ("txtDBTime.SetText 15:07:09") or up to their first blank.
struct Procedure {
    const char* name;
    std::function<void(Program&)> prepare;
    std::function<void(Program&)> run;

    /// Calls that are not tried: tests, whose failure takes another branch, and what other calls depend on.
    Texts untried = {};

    /// Calls that belong to the same step as a failing one and fall with it.
    std::map<std::string, Texts> sameStep = {};

    /// Procedures inside this one that record under a name of their own, with their calls.
    std::map<std::string, Texts> recordedAs = {};

    /// What is recorded in any case.
    Texts recordedAnyway = {};

    /// What an abandoned procedure still calls.
    Texts recovery = {};
};

std::string NameOf(const std::string& call)
{
    return call.substr(0, call.find(' '));
}

Texts NamesOf(Texts calls)
{
    std::ranges::transform(calls, calls.begin(), NameOf);
    return calls;
}

bool Has(const Texts& calls, const std::string& call)
{
    return std::ranges::count(calls, call) + std::ranges::count(calls, NameOf(call)) > 0;
}

Texts AllOf(Texts calls, const Texts& others)
{
    calls.insert(calls.end(), others.begin(), others.end());
    return calls;
}

std::string RecordedAs(const Procedure& procedure, const std::string& call)
{
    for (const auto& [inner, calls] : procedure.recordedAs)
        if (Has(calls, call))
            return inner;
    return call.starts_with("lstStatus.") ? "frmConnect.StatusLine" : procedure.name;
}

/// Runs the procedure with one call failing or none; gives what was called.
Texts Run(const Procedure& procedure, Program& program, std::optional<std::size_t> failing = {})
{
    procedure.prepare(program);
    program.TakeRecords();
    program.journal.Clear();
    program.journal.RefuseNothing();
    if (failing)
        program.journal.FailAt(*failing);
    procedure.run(program);
    program.journal.FailNothing();
    return program.journal.Calls();
}

Texts Without(Texts calls, std::size_t failing, const Texts& fallen)
{
    for (const std::string& name : fallen)
        calls.erase(std::find(calls.begin() + static_cast<std::ptrdiff_t>(failing) + 1, calls.end(), name));
    return calls;
}

Texts UpTo(Texts calls, std::size_t failing, const Texts& recovery)
{
    calls.resize(failing + 1);
    return AllOf(calls, recovery);
}

void ExpectLaw(const Procedure& procedure, bool abandons)
{
    Program undisturbed;
    const Texts calls = Run(procedure, undisturbed);
    const Texts names = NamesOf(calls);
    EXPECT_EQ(undisturbed.TakeRecords(), procedure.recordedAnyway) << procedure.name;
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        const std::string& call = calls[failing];
        if (Has(procedure.untried, call))
            continue;
        SCOPED_TRACE(procedure.name + (": " + call + " fails"));
        Program program;
        const Texts ran = NamesOf(Run(procedure, program, failing));
        const std::string recordedAs = RecordedAs(procedure, call);
        const auto fallen = procedure.sameStep.find(call);
        const bool ends = abandons && recordedAs == procedure.name;
        EXPECT_EQ(ran, ends ? UpTo(names, failing, procedure.recovery)
                            : Without(names, failing,
                                      fallen == procedure.sameStep.end() ? Texts() : fallen->second));
        Texts records = procedure.recordedAnyway;
        records.push_back("5|told to fail|" + recordedAs);
        EXPECT_EQ(program.TakeRecords(), records);
    }
}

const auto kStartConnected = [](Program& program) { program.StartConnected(); };
const auto kStartListening = [](Program& program) { program.StartPlaying({{"Connect", "Listen"}}); };

/// The next tick finds the socket closed, and connected after its pauses.
void PlayUnconnected(Program& program, const char* role)
{
    program.StartPlaying({{"Reconnect", "YES"}, {"Connect", role}});
    program.WinsockConnect.state = platform::WinsockControl::kClosed;
    program.events.onPass = [&] { program.WinsockConnect.state = platform::WinsockControl::kConnected; };
}

/// Settings of every kind, and no database file, so that opening it fails quietly.
void HaveAllSettings(Program& program)
{
    program.Set({{"Interval", "40"},
                 {"IpAddress", "239.1.2.3"},
                 {"PortNumber", "6000"},
                 {"Protocol", "MCAST"},
                 {"Reconnect", "YES"},
                 {"Filepath", "/data/none.mdb"}});
}

TEST(FailureLaw, ProceduresOfTheContinueStyleTryEveryStep)
{
    const Texts whatIsSaved = {"files.FileExists",   "txtTimerInterval.Text", "txtIPAddress.Text",
                               "txtPortNumber.Text", "cboProtocol.Text",      "cboConnect.Text"};
    const auto tick = [](const std::function<void(Program&)>& prepare) {
        return Procedure{.name = "frmConnect.tmrSendData",
                         .prepare = prepare,
                         .run = [](Program& program) { program.Tick(); },
                         .untried = {"WinsockConnect.State", "TransactionSet.RecordCount",
                                     "TransactionSet.AtEOF", "chkTransferTime.Value",
                                     "TransactionSet.Field rawtransaction", "events.ProcessPending"},
                         .sameStep = {{"TransactionSet.Field timestamp", {"txtDBTime.SetText"}}}};
    };
    const Procedure procedures[] = {
        tick(kStartConnected),
        tick([](Program& program) { PlayUnconnected(program, "Connect"); }),
        tick([](Program& program) { PlayUnconnected(program, "Listen"); }),
        {.name = "frmConnect.cmdClear",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.cmdClear.OnClick(); }},
        {.name = "frmConnect.SaveConfigSettings",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.cmdApply.OnClick(); },
         .untried = whatIsSaved,
         .recordedAs = {{"frmConnect.cmdClear",
                         {"tmrSendData.SetEnabled", "TransactionSet.MoveFirst", "DataViewList.Clear",
                          "WinsockConnect.Close"}}}},
        {.name = "frmConfig.DefaultSettings",
         .prepare = HaveAllSettings,
         .run = [](Program& program) { program.Load(); },
         .untried = {"files.FileExists", "profile.GetPrivateProfileStringA", "cboProtocol.AddItem",
                     "cboProtocol.SetText MCAST", "cboConnect.AddItem Connect"},
         .sameStep = {{"txtIPAddress.Text", {"txtPortNumber.Text", "MCSockConnect.OpenGroup"}},
                      {"txtPortNumber.Text", {"MCSockConnect.OpenGroup"}}},
         .recordedAs = {{"frmConnect.Form.Load",
                         {"window.SetCaption", "cboProtocol.Text", "txtIPAddress.Text", "txtPortNumber.Text",
                          "MCSockConnect.OpenGroup"}},
                        {"frmConnect.LoadConfigSettings",
                         {"txtTimerInterval.SetText", "tmrSendData.SetInterval 40",
                          "txtIPAddress.SetText 239.1.2.3", "txtPortNumber.SetText 6000",
                          "chkReconnect.SetValue 1", "txtFilePath.SetText /data/none.mdb"}},
                        {"frmConfig.DefaultSettings", {"lstStatus.Clear"}}}},
        {.name = "frmConnect.WinsockConnect.ConnectionRequest",
         .prepare = kStartListening,
         .run = [](Program& program) { program.WinsockConnect.Request(1); }},
        {.name = "frmConnect.WinsockConnect.Error",
         .prepare = kStartListening,
         .run = [](Program& program) { program.WinsockConnect.OnError(7, "peer"); },
         .untried = whatIsSaved,
         .recordedAs = {{"frmConnect.SaveConfigSettings",
                         {"profile.WritePrivateProfileStringA", "chkReconnect.Value"}}},
         .recordedAnyway = {"7|peer|frmConnect.WinsockConnect.Error"}},
        {.name = "frmConnect.WinsockConnect.Error",
         .prepare =
             [](Program& program) {
                 program.StartPlaying({{"Reconnect", "YES"}});
             },
         .run = [](Program& program) { program.WinsockConnect.OnError(7, "peer"); },
         .untried =
             AllOf(whatIsSaved, {"tmrSendData.SetInterval", "tmrSendData.SetEnabled", "chkReconnect.Value",
                                 "WinsockConnect.State", "WinsockConnect.Close", "WinsockConnect.SetProtocol",
                                 "WinsockConnect.SetRemoteHost", "WinsockConnect.SetRemotePort"}),
         .recordedAs = {{"frmConnect.SaveConfigSettings", {"profile.WritePrivateProfileStringA"}}},
         .recordedAnyway = {"7|peer|frmConnect.WinsockConnect.Error"}},
        {.name = "frmConnect.MCSockConnect.Error",
         .prepare =
             [](Program& program) {
                 program.StartPlaying(
                     {{"Reconnect", "YES"}, {"Protocol", "MCAST"}, {"IpAddress", "239.1.2.3"}});
             },
         .run = [](Program& program) { program.MCSockConnect.OnError(1, ""); },
         .untried = {"txtIPAddress.Text", "txtPortNumber.Text"}},
    };
    for (const Procedure& procedure : procedures)
        ExpectLaw(procedure, false);
}

TEST(FailureLaw, ProceduresOfTheAbandonStyleEndAtTheFirstFailure)
{
    const Procedure procedures[] = {
        {.name = "frmConnect.cmdPlayPause",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.cmdPlay.OnClick(); },
         .recovery = {"tmrSendData.SetEnabled"}},
        {.name = "frmConnect.SetWinsockSettings",
         .prepare = [](Program& program) { program.Start(); },
         .run = [](Program& program) { program.cmdPlay.OnClick(); },
         .untried = {"txtTimerInterval.Text", "tmrSendData.SetInterval", "tmrSendData.SetEnabled",
                     "WinsockConnect.State", "WinsockConnect.Close", "WinsockConnect.Connect"},
         .recovery = {"WinsockConnect.Close", "WinsockConnect.Connect", "tmrSendData.SetEnabled"}},
        {.name = "frmConnect.cmdPause",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.cmdPause.OnClick(); }},
        {.name = "frmConnect.cmdOpenDialogue",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.OpenFile("/data/missing.mdb"); },
         .recordedAs = {{"frmConnect.InitializeDB", {"files.FileExists"}}}},
        {.name = "frmConnect.WinsockConnect.Close",
         .prepare = kStartListening,
         .run = [](Program& program) { program.WinsockConnect.OnClose(); },
         .recovery = {"lstStatus.AddItem", "lstStatus.SetListIndex", "tmrSendData.SetEnabled"}},
    };
    for (const Procedure& procedure : procedures)
        ExpectLaw(procedure, true);
}

}  // namespace
