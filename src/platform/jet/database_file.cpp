#include "platform/jet/database_file.h"

#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/jet/catalogue.h"
#include "platform/jet/damage_report.h"
#include "platform/jet/index_order.h"
#include "platform/jet/page_file.h"
#include "platform/jet/query.h"
#include "platform/jet/record_set.h"
#include "platform/jet/sorted_order.h"

namespace platform::jet {
namespace {

std::vector<RowPosition> PositionsInOrder(const PageFile& file, const TableDefinition& table,
                                          const Column& column)
{
    if (auto positions = PositionsByIndex(file, table, column))
        return *std::move(positions);
    return PositionsBySorting(file, table, column);
}

class JetDatabase : public Database {
public:
    explicit JetDatabase(std::shared_ptr<const PageFile> file) : file_(std::move(file)) {}

    [[nodiscard]] std::unique_ptr<RecordSet> OpenRecordset(const std::string& queryText) override
    {
        const Query query = ParseQuery(queryText);
        return ReportingDamage(file_->Name(), [&] { return Run(query); });
    }

private:
    [[nodiscard]] std::unique_ptr<RecordSet> Run(const Query& query) const
    {
        file_->ForgetPages();
        TableDefinition table = FindTable(*file_, query.table);
        const Column* const column = table.Find(query.orderColumn);
        if (column == nullptr)
            throw Failure(failure::kNoSuchQueryColumn, "The table " + query.table + " in " + file_->Name() +
                                                           " has no column " + query.orderColumn);
        std::vector<RowPosition> positions =
            InTable(table.name, [&] { return PositionsInOrder(*file_, table, *column); });
        return std::make_unique<JetRecordSet>(file_, std::move(table), std::move(positions));
    }

    std::shared_ptr<const PageFile> file_;
};

std::unique_ptr<Database> Open(std::unique_ptr<ByteSource> source, const std::string& name,
                               const std::string& password)
{
    auto file = std::make_shared<const PageFile>(std::move(source), name);
    if (!file->Password().empty() && file->Password() != password)
        throw Failure(failure::kInvalidPassword, "Not a valid password for the database " + name);
    // A database whose tables cannot be found is refused here, not at the first query.
    static_cast<void>(ReadCatalogueDefinition(*file));
    return std::make_unique<JetDatabase>(std::move(file));
}

}  // namespace

std::unique_ptr<Database> OpenDatabaseFile(std::unique_ptr<ByteSource> source, const std::string& name,
                                           const std::string& password)
{
    return ReportingDamage(name, [&] { return Open(std::move(source), name, password); });
}

}  // namespace platform::jet
