#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>

#include "logic/program.h"

/// The two failure styles as a law: every call that a procedure makes is made to fail, one in each run, and
/// what else ran and what was recorded is compared with the undisturbed run.
namespace {

struct Procedure {
    const char* name;
    std::function<void(Program&)> prepare;
    std::function<void(Program&)> run;

    /// Calls that belong to the same step as a failing one and fall with it.
    std::map<std::string, Texts> sameStep = {};

    /// Tests, whose failure takes another branch; they have tests of their own.
    Texts tests = {};

    /// Calls of procedures inside this one that record under a name of their own.
    std::map<std::string, std::string> recordedAs = {};

    /// What an abandoned procedure still calls.
    Texts recovery = {};
};

std::string NameOf(const std::string& call)
{
    return call.substr(0, call.find(' '));
}

Texts CallsOf(Program& program)
{
    Texts names;
    for (const std::string& call : program.journal.Calls())
        if (NameOf(call) != "files.Append")
            names.push_back(NameOf(call));
    return names;
}

/// Runs the procedure with one call failing, -1 for none.
Texts Run(const Procedure& procedure, Program& program, int failing)
{
    procedure.prepare(program);
    program.TakeRecords();
    program.journal.Clear();
    if (failing >= 0)
        program.journal.FailAt(static_cast<std::size_t>(failing));
    procedure.run(program);
    program.journal.FailNothing();
    return CallsOf(program);
}

std::string RecordedAs(const Procedure& procedure, const std::string& call)
{
    if (call.starts_with("lstStatus."))
        return "frmConnect.StatusLine";
    const auto found = procedure.recordedAs.find(call);
    return found == procedure.recordedAs.end() ? procedure.name : found->second;
}

Texts WithoutSameStep(const Procedure& procedure, Texts calls, std::size_t failing)
{
    const auto found = procedure.sameStep.find(calls[failing]);
    if (found == procedure.sameStep.end())
        return calls;
    for (const std::string& fallen : found->second)
        calls.erase(std::find(calls.begin() + static_cast<std::ptrdiff_t>(failing) + 1, calls.end(), fallen));
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
    EXPECT_EQ(undisturbed.TakeRecords(), Texts{}) << procedure.name;
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        const std::string& call = calls[failing];
        if (std::ranges::count(procedure.tests, call) > 0)
            continue;
        SCOPED_TRACE(procedure.name + (": " + call + " fails"));
        Program program;
        const Texts ran = Run(procedure, program, static_cast<int>(failing));
        const std::string recordedAs = RecordedAs(procedure, call);
        const bool ends = abandons && recordedAs == procedure.name;
        EXPECT_EQ(ran, ends ? UpTo(calls, failing, procedure.recovery)
                            : WithoutSameStep(procedure, calls, failing));
        EXPECT_EQ(program.TakeRecords(), Texts{"5|told to fail|" + recordedAs});
    }
}

const auto kStartConnected = [](Program& program) { program.StartConnected(); };

TEST(FailureLaw, ProceduresOfTheContinueStyleTryEveryStep)
{
    const Procedure procedures[] = {
        {.name = "frmConnect.tmrSendData",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.Tick(); },
         .tests = {"WinsockConnect.State", "TransactionSet.RecordCount", "TransactionSet.AtEOF",
                   "chkTransferTime.Value", "TransactionSet.Field"}},
        {.name = "frmConnect.cmdClear",
         .prepare = kStartConnected,
         .run = [](Program& program) { program.cmdClear.OnClick(); }},
        {.name = "frmConnect.WinsockConnect.ConnectionRequest",
         .prepare = [](Program& program) { program.StartPlaying("TCP", "Listen"); },
         .run = [](Program& program) { program.WinsockConnect.OnConnectionRequest(1); }},
        {.name = "frmConnect.MCSockConnect.Error",
         .prepare =
             [](Program& program) {
                 program.Setting("TCP/IP Settings", "Reconnect", "YES");
                 program.StartPlaying("MCAST", "Connect");
             },
         .run = [](Program& program) { program.MCSockConnect.OnError(1, ""); },
         .tests = {"chkReconnect.Value", "txtIPAddress.Text", "txtPortNumber.Text"}},
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
