#include "app/frm_connect.h"

#include "platform/conversions.h"

namespace trellivan {

frmConnect::frmConnect(const WindowControls& controls, modGlobals& globals, platform::DatabaseEngine& engine,
                       platform::FileSystem& files, platform::EventQueue& events,
                       const platform::Clock& clock, const platform::RegionalFormats& formats)
    : WindowControls(controls),
      globals_(globals),
      engine_(engine),
      files_(files),
      events_(events),
      clock_(clock),
      formats_(formats)
{
    cmdApply.OnClick = [this] { cmdApply_Click(); };
    cmdOpenDialogue.OnClick = [this] { cmdOpenDialogue_Click(); };
    cmdPlay.OnClick = [this] { cmdPlay_Click(); };
    cmdPause.OnClick = [this] { cmdPause_Click(); };
    cmdClear.OnClick = [this] { cmdClear_Click(); };
    tmrSendData.OnTimer = [this] { tmrSendData_Timer(); };
    WinsockConnect.OnConnect = [this] { WinsockConnect_Connect(); };
    WinsockConnect.OnConnectionRequest = [this](auto request) { WinsockConnect_ConnectionRequest(request); };
    WinsockConnect.OnDataArrival = [this](std::size_t) { WinsockConnect_DataArrival(); };
    WinsockConnect.OnClose = [this] { WinsockConnect_Close(); };
    WinsockConnect.OnError = [this](int number, const std::string& description) {
        WinsockConnect_Error(number, description);
    };
    MCSockConnect.OnError = [this](int, const std::string&) { MCSockConnect_Error(); };
}

void frmConnect::StatusLine(const std::string& line)  // continue
{
    PendingFailure pending;
    pending.Step([&] { lstStatus.AddItem(line); });
    pending.Step([&] { lstStatus.SetListIndex(StatusLinesAdded); });
    pending.Step([&] { StatusLinesAdded = platform::Successor(StatusLinesAdded); });
    RecordIfPending(pending, "frmConnect.StatusLine");
}

void frmConnect::ShowStatus(const std::string& message)
{
    StatusLine(TimeOfDay() + message);
}

void frmConnect::cmdOpenDialogue_Click()  // abandon
{
    try {
        WinsockConnect.Close();
        CommonDialogueDBFile.SetCancelError(true);
        CommonDialogueDBFile.SetFilter("Database Files|*.mdb;*.sdd");
        CommonDialogueDBFile.ShowOpen();
        FilePath = CommonDialogueDBFile.FileName();
        InitializeDB();
    } catch (...) {
        RecordAbandoned("frmConnect.cmdOpenDialogue");
    }
}

std::string frmConnect::TimeOfDay() const
{
    return formats_.LongTime(clock_.Now());
}

std::int32_t frmConnect::WholeNumber(const std::string& text) const
{
    return platform::ToLong(text, formats_);
}

void frmConnect::RecordAbandoned(const std::string& procedure)
{
    globals_.WriteErrorLog(platform::CurrentFailure(), procedure);
}

void frmConnect::Record(PendingFailure& pending, const std::string& description, const std::string& procedure)
{
    globals_.WriteErrorLog(pending.Number(), description, procedure);
    pending.Clear();
}

void frmConnect::RecordIfPending(PendingFailure& pending, const std::string& procedure)
{
    if (pending.Exists())
        Record(pending, pending.Description(), procedure);
}

}  // namespace trellivan
