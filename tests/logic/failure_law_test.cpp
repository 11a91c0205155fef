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

    /// Calls of procedures inside this one that record under a name of their own.
    std::map<std::string, std::string> recordedAs = {};

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

template <class Found>
Found Lookup(const std::map<std::string, Found>& table, const std::string& call, Found otherwise)
{
    for (const std::string& key : {call, NameOf(call)})
        if (const auto found = table.find(key); found != table.end())
            return found->second;
    return otherwise;
}

/// Runs the procedure with one call failing, -1 for none; gives what was called, records left out.
Texts Run(const Procedure& procedure, Program& program, int failing)
{
    procedure.prepare(program);
    program.TakeRecords();
    program.journal.Clear();
    if (failing >= 0)
        program.journal.FailAt(static_cast<std::size_t>(failing));
    procedure.run(program);
    program.journal.FailNothing();
    Texts calls = program.journal.Calls();
    std::erase_if(calls, [](const std::string& call) { return NameOf(call) == "files.Append"; });
    return calls;
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
    calls.insert(calls.end(), recovery.begin(), recovery.end());
    return calls;
}

void ExpectLaw(const Procedure& procedure, bool abandons)
{
    Program undisturbed;
    const Texts calls = Run(procedure, undisturbed, -1);
    const Texts names = NamesOf(calls);
    EXPECT_EQ(undisturbed.TakeRecords(), procedure.recordedAnyway) << procedure.name;
    // Records written on the way count as calls for the journal, and so move the index of a later call.
    const std::size_t shift = procedure.recordedAnyway.size();
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        const std::string& call = calls[failing];
        if (Has(procedure.untried, call))
            continue;
        SCOPED_TRACE(procedure.name + (": " + call + " fails"));
        Program program;
        const Texts ran = NamesOf(Run(procedure, program, static_cast<int>(failing + shift)));
        const std::string statusOr =
            call.starts_with("lstStatus.") ? "frmConnect.StatusLine" : procedure.name;
        const std::string recordedAs = Lookup(procedure.recordedAs, call, statusOr);
        const bool ends = abandons && recordedAs == procedure.name;
        EXPECT_EQ(ran, ends ? UpTo(names, failing, procedure.recovery)
                            : Without(names, failing, Lookup(procedure.sameStep, call, Texts())));
        Texts records = procedure.recordedAnyway;
        records.push_back("5|told to fail|" + recordedAs);
        EXPECT_EQ(program.TakeRecords(), records);
    }
}

const auto kStartConnected = [](Program& program) { program.StartConnected(); };

/// Settings of every kind, and no database file, so that opening it fails quietly.
void HaveAllSettings(Program& program)
{
    program.Setting("Timer", "Interval", "40");
    program.Setting("TCP/IP Settings", "IpAddress", "239.1.2.3");
    program.Setting("TCP/IP Settings", "PortNumber", "6000");
    program.Setting("TCP/IP Settings", "Protocol", "MCAST");
    program.Setting("TCP/IP Settings", "Reconnect", "YES");
    program.Setting("Database File", "Filepath", "/data/none.mdb");
}

TEST(FailureLaw, ProceduresOfTheContinueStyleTryEveryStep)
{
    const std::string load = "frmConnect.LoadConfigSettings";
    const std::string formLoad = "frmConnect.Form.Load";
    const std::string clear = "frmConnect.cmdClear";
    const Procedure procedures[] = {
        {.name = "frmConnect.tmrSendData",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.Tick(); },
         .untried = {"WinsockConnect.State", "TransactionSet.RecordCount", "TransactionSet.AtEOF",
                     "chkTransferTime.Value", "TransactionSet.Field rawtransaction"},
         .sameStep = {{"TransactionSet.Field timestamp", {"txtDBTime.SetText"}}}},
        {.name = "frmConnect.cmdClear",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.cmdClear.OnClick(); }},
        {.name = "frmConnect.SaveConfigSettings",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.cmdApply.OnClick(); },
         .untried = {"files.FileExists", "txtTimerInterval.Text", "txtIPAddress.Text", "txtPortNumber.Text",
                     "cboProtocol.Text", "cboConnect.Text"},
         .recordedAs = {{"tmrSendData.SetEnabled", clear},
                        {"TransactionSet.MoveFirst", clear},
                        {"DataViewList.Clear", clear},
                        {"WinsockConnect.Close", clear}}},
        {.name = "frmConfig.DefaultSettings",
         .prepare = HaveAllSettings,
         .run = [](Program& program) { program.Load(); },
         .untried = {"files.FileExists", "profile.GetPrivateProfileStringA", "cboProtocol.AddItem",
                     "cboProtocol.SetText MCAST", "cboConnect.AddItem Connect"},
         .sameStep = {{"txtIPAddress.Text", {"txtPortNumber.Text", "MCSockConnect.OpenGroup"}},
                      {"txtPortNumber.Text", {"MCSockConnect.OpenGroup"}}},
         .recordedAs = {{"window.SetCaption", formLoad},
                        {"cboProtocol.Text", formLoad},
                        {"txtIPAddress.Text", formLoad},
                        {"txtPortNumber.Text", formLoad},
                        {"MCSockConnect.OpenGroup", formLoad},
                        {"txtTimerInterval.SetText", load},
                        {"tmrSendData.SetInterval 40", load},
                        {"txtIPAddress.SetText 239.1.2.3", load},
                        {"txtPortNumber.SetText 6000", load},
                        {"chkReconnect.SetValue 1", load},
                        {"txtFilePath.SetText /data/none.mdb", load},
                        {"lstStatus.Clear", "frmConfig.DefaultSettings"}}},
        {.name = "frmConnect.WinsockConnect.ConnectionRequest",
         .prepare = [](Program& program) { program.StartPlaying("TCP", "Listen"); },
         .run = [](Program& program) { program.WinsockConnect.OnConnectionRequest(1); }},
        {.name = "frmConnect.WinsockConnect.Error",
         .prepare = [](Program& program) { program.StartPlaying("TCP", "Listen"); },
         .run = [](Program& program) { program.WinsockConnect.OnError(7, "peer"); },
         .untried = {"files.FileExists", "txtTimerInterval.Text", "txtIPAddress.Text", "txtPortNumber.Text",
                     "cboProtocol.Text", "cboConnect.Text"},
         .recordedAs = {{"profile.WritePrivateProfileStringA", "frmConnect.SaveConfigSettings"},
                        {"chkReconnect.Value", "frmConnect.SaveConfigSettings"}},
         .recordedAnyway = {"7|peer|frmConnect.WinsockConnect.Error"}},
        {.name = "frmConnect.MCSockConnect.Error",
         .prepare =
             [](Program& program) {
                 program.Setting("TCP/IP Settings", "Reconnect", "YES");
                 program.StartPlaying("MCAST", "Connect");
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
        {.name = "frmConnect.cmdPause",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.cmdPause.OnClick(); }},
        {.name = "frmConnect.cmdOpenDialogue",
         .prepare =
             [](Program& program) {
                 program.StartConnected();
                 program.CommonDialogueDBFile.choice = "/data/missing.mdb";
             },
         .run = [](Program& program) { program.cmdOpenDialogue.OnClick(); },
         .recordedAs = {{"files.FileExists", "frmConnect.InitializeDB"}}},
        {.name = "frmConnect.WinsockConnect.Close",
         .prepare = [](Program& program) { program.StartPlaying("TCP", "Listen"); },
         .run = [](Program& program) { program.WinsockConnect.OnClose(); },
         .recovery = {"lstStatus.AddItem", "lstStatus.SetListIndex", "tmrSendData.SetEnabled"}},
    };
    for (const Procedure& procedure : procedures)
        ExpectLaw(procedure, true);
}

}  // namespace
