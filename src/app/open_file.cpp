#include "app/frm_connect.h"

namespace trellivan {

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

}  // namespace trellivan
