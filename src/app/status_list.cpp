#include "app/frm_connect.h"
#include "platform/conversions.h"

namespace trellivan {

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

}  // namespace trellivan
