#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>

#include "logic/program.h"

/// The two failure styles as a law: every call that a procedure makes is made to fail, one in each run, and
/// what else ran and what was recorded is compared with the undisturbed run.
namespace {

using Step = std::function<void(Program&)>;

/// Where a procedure is not as the others. Calls are named in full ("txtDBTime.SetText 15:07:09") or up to their
/// first blank.
struct Exceptions {
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

struct Procedure {
    const char* name;
    Step prepare;
    Step run;
    Exceptions but = {};
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
    for (const auto& [inner, calls] : procedure.but.recordedAs)
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
    EXPECT_EQ(undisturbed.TakeRecords(), procedure.but.recordedAnyway) << procedure.name;
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        const std::string& call = calls[failing];
        if (Has(procedure.but.untried, call))
            continue;
        SCOPED_TRACE(procedure.name + (": " + call + " fails"));
        Program program;
        const Texts ran = NamesOf(Run(procedure, program, failing));
        const std::string recordedAs = RecordedAs(procedure, call);
        const auto fallen = procedure.but.sameStep.find(call);
        const bool ends = abandons && recordedAs == procedure.name;
        EXPECT_EQ(ran, ends ? UpTo(names, failing, procedure.but.recovery)
                            : Without(names, failing,
                                      fallen == procedure.but.sameStep.end() ? Texts() : fallen->second));
        Texts records = procedure.but.recordedAnyway;
        records.push_back("5|told to fail|" + recordedAs);
        EXPECT_EQ(program.TakeRecords(), records);
    }
}

Step Playing(const Settings& settings)
{
    return [settings](Program& program) { program.StartPlaying(settings); };
}

void PlayConnected(Program& program)
{
    program.StartConnected();
}

/// The next tick finds the socket closed, and connected after its pauses.
Step Unconnected(const char* role)
{
    return [role](Program& program) {
        program.StartPlaying({{"Reconnect", "YES"}, {"Connect", role}});
        program.WinsockConnect.state = platform::WinsockControl::kClosed;
        program.events.onPass = [&] { program.WinsockConnect.state = platform::WinsockControl::kConnected; };
    };
}

Step Click(platform::fakes::CommandButton Program::*button)
{
    return [button](Program& program) { (program.*button).OnClick(); };
}

TEST(FailureLaw, ProceduresOfTheContinueStyleTryEveryStep)
{
    const Texts whatIsSaved = {"files.FileExists",   "txtTimerInterval.Text", "txtIPAddress.Text",
                               "txtPortNumber.Text", "cboProtocol.Text",      "cboConnect.Text"};
    const Settings group = {{"Reconnect", "YES"}, {"Protocol", "MCAST"}, {"IpAddress", "239.1.2.3"}};
    // Settings of every kind, and no database file, so that opening it fails quietly.
    const Settings every = {{"Interval", "40"},     {"IpAddress", "239.1.2.3"},
                            {"PortNumber", "6000"}, {"Protocol", "MCAST"},
                            {"Reconnect", "YES"},   {"Filepath", "/data/none.mdb"}};
    const Step load = [&](Program& program) { program.Load(every); };
    const Step tick = [](Program& program) { program.Tick(); };
    const Step request = [](Program& program) { program.WinsockConnect.Request(1); };
    const Step groupError = [](Program& program) { program.MCSockConnect.OnError(1, ""); };
    const Step socketError = [](Program& program) { program.WinsockConnect.OnError(7, "peer"); };
    const Texts itsRecord = {"7|peer|frmConnect.WinsockConnect.Error"};
    const Exceptions ofTick = {
        .untried = {"WinsockConnect.State", "TransactionSet.RecordCount", "TransactionSet.AtEOF",
                    "chkTransferTime.Value", "TransactionSet.Field rawtransaction", "events.ProcessPending"},
        .sameStep = {{"TransactionSet.Field timestamp", {"txtDBTime.SetText"}}}};
    const Exceptions ofApply = {.untried = whatIsSaved,
                                .recordedAs = {{"frmConnect.cmdClear",
                                                {"tmrSendData.SetEnabled", "TransactionSet.MoveFirst",
                                                 "DataViewList.Clear", "WinsockConnect.Close"}}}};
    const Exceptions ofLoad = {
        .untried = {"files.FileExists", "profile.GetPrivateProfileStringA", "cboProtocol.AddItem",
                    "cboProtocol.SetText MCAST", "cboConnect.AddItem Connect"},
        .sameStep = {{"txtIPAddress.Text", {"txtPortNumber.Text", "MCSockConnect.OpenGroup"}},
                     {"txtPortNumber.Text", {"MCSockConnect.OpenGroup"}}},
        .recordedAs = {
            {"frmConnect.Form.Load",
             {"window.SetCaption", "cboProtocol.Text", "txtIPAddress.Text", "txtPortNumber.Text",
              "MCSockConnect.OpenGroup"}},
            {"frmConnect.LoadConfigSettings",
             {"txtTimerInterval.SetText", "tmrSendData.SetInterval 40", "txtIPAddress.SetText 239.1.2.3",
              "txtPortNumber.SetText 6000", "chkReconnect.SetValue 1", "txtFilePath.SetText /data/none.mdb"}},
            {"frmConfig.DefaultSettings", {"lstStatus.Clear"}}}};
    const Exceptions ofAListenersError = {
        .untried = whatIsSaved,
        .recordedAs = {{"frmConnect.SaveConfigSettings",
                        {"profile.WritePrivateProfileStringA", "chkReconnect.Value"}}},
        .recordedAnyway = itsRecord};
    const Exceptions ofAClientsError = {
        .untried =
            AllOf(whatIsSaved, {"tmrSendData.SetInterval", "tmrSendData.SetEnabled", "chkReconnect.Value",
                                "WinsockConnect.State", "WinsockConnect.Close", "WinsockConnect.SetProtocol",
                                "WinsockConnect.SetRemoteHost", "WinsockConnect.SetRemotePort"}),
        .recordedAs = {{"frmConnect.SaveConfigSettings", {"profile.WritePrivateProfileStringA"}}},
        .recordedAnyway = itsRecord};
    const Exceptions ofGroupError = {.untried = {"txtIPAddress.Text", "txtPortNumber.Text"}};
    const Procedure procedures[] = {
        {"frmConnect.tmrSendData", PlayConnected, tick, ofTick},
        {"frmConnect.tmrSendData", Unconnected("Connect"), tick, ofTick},
        {"frmConnect.tmrSendData", Unconnected("Listen"), tick, ofTick},
        {"frmConnect.cmdClear", PlayConnected, Click(&Program::cmdClear)},
        {"frmConnect.SaveConfigSettings", PlayConnected, Click(&Program::cmdApply), ofApply},
        {"frmConfig.DefaultSettings", [](Program&) {}, load, ofLoad},
        {"frmConnect.WinsockConnect.ConnectionRequest", Playing({{"Connect", "Listen"}}), request},
        {"frmConnect.WinsockConnect.Error", Playing({{"Connect", "Listen"}}), socketError, ofAListenersError},
        {"frmConnect.WinsockConnect.Error", Playing({{"Reconnect", "YES"}}), socketError, ofAClientsError},
        {"frmConnect.MCSockConnect.Error", Playing(group), groupError, ofGroupError},
    };
    for (const Procedure& procedure : procedures)
        ExpectLaw(procedure, false);
}

TEST(FailureLaw, ProceduresOfTheAbandonStyleEndAtTheFirstFailure)
{
    const Step start = [](Program& program) { program.Start(); };
    const Step openFile = [](Program& program) { program.OpenFile("/data/missing.mdb"); };
    const Step close = [](Program& program) { program.WinsockConnect.OnClose(); };
    const Exceptions ofPlay = {.recovery = {"tmrSendData.SetEnabled"}};
    const Exceptions ofOpenFile = {.recordedAs = {{"frmConnect.InitializeDB", {"files.FileExists"}}}};
    const Exceptions ofSetUp = {
        .untried = {"txtTimerInterval.Text", "tmrSendData.SetInterval", "tmrSendData.SetEnabled",
                    "WinsockConnect.State", "WinsockConnect.Close", "WinsockConnect.Connect"},
        .recovery = {"WinsockConnect.Close", "WinsockConnect.Connect", "tmrSendData.SetEnabled"}};
    const Exceptions ofClosing = {
        .recovery = {"lstStatus.AddItem", "lstStatus.SetListIndex", "tmrSendData.SetEnabled"}};
    const Procedure procedures[] = {
        {"frmConnect.cmdPlayPause", PlayConnected, Click(&Program::cmdPlay), ofPlay},
        {"frmConnect.SetWinsockSettings", start, Click(&Program::cmdPlay), ofSetUp},
        {"frmConnect.cmdPause", PlayConnected, Click(&Program::cmdPause)},
        {"frmConnect.cmdOpenDialogue", PlayConnected, openFile, ofOpenFile},
        {"frmConnect.WinsockConnect.Close", Playing({{"Connect", "Listen"}}), close, ofClosing},
    };
    for (const Procedure& procedure : procedures)
        ExpectLaw(procedure, true);
}

}  // namespace
