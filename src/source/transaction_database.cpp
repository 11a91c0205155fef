#include "app/frm_connect.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace trellivan {
namespace {

constexpr std::size_t kTypeLength = 3;
constexpr const char* kPasswordConnect = "MS Access;PWD=4073";
constexpr const char* kTransactionQuery = "SELECT * FROM trans ORDER BY ref";

std::string TypeOf(const std::string& path)
{
    return platform::LowerCase(path.size() < kTypeLength ? path : path.substr(path.size() - kTypeLength));
}

}  // namespace

void frmConnect::InitializeDB()  // abandon
{
    try {
        if (!files_.FileExists(globals_.FullPath(FilePath)))
            return RefuseDatabase("  File Not Found");
        const std::string type = TypeOf(FilePath);
        if (type != "sdd" && type != "mdb")
            return RefuseDatabase("  Improper File Extention");
        FileType = type;
        TransactionDB = OpenDatabaseOfType();
        TransactionSet = TransactionDB->OpenRecordset(kTransactionQuery);
        ShowStatus("  Database Initialized");
        txtFilePath.SetText(FilePath);
        DBInitialized = true;
    } catch (...) {
        RecordAbandoned("frmConnect.InitializeDB");
        IgnoringFailure([&] { RefuseDatabase(" Error Initializing Database"); });
    }
}

std::unique_ptr<platform::Database> frmConnect::OpenDatabaseOfType()
{
    return engine_.OpenDatabase(globals_.FullPath(FilePath), FileType == "sdd" ? kPasswordConnect : "");
}

void frmConnect::RefuseDatabase(const std::string& message)
{
    DBInitialized = false;
    ShowStatus(message);
}

platform::RecordSet& frmConnect::Transactions()
{
    if (!TransactionSet)
        throw platform::Failure(platform::failure::kObjectNotSet, "No record set is open");
    return *TransactionSet;
}

}  // namespace trellivan
