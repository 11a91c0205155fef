#include "platform/jet/database_file.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <utility>
#include <vector>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/jet/damage_report.h"
#include "platform/jet/page_file.h"
#include "platform/jet/row_order.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {
namespace {

constexpr std::size_t kTable = 3;
constexpr std::size_t kColumn = 6;
constexpr std::array<const char*, 7> kWords = {"select", "*", "from", nullptr, "order", "by", nullptr};

bool IsName(const std::string& word)
{
    const auto allowed = [](char c) {
        return c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    };
    return std::ranges::all_of(word, allowed);
}

OrderedRows FindRows(const std::shared_ptr<const PageFile>& file, const Query& query)
{
    TableDefinition table = FindTable(*file, query.table);
    const Column* const column = table.Find(query.orderColumn);
    if (column == nullptr)
        throw Failure(failure::kNoSuchQueryColumn, "The table " + query.table + " in " + file->Name() +
                                                       " has no column " + query.orderColumn);
    std::vector<RowPosition> positions =
        InTable(table.name, [&] { return PositionsInOrder(*file, table, *column); });
    return {file, std::move(table), std::move(positions)};
}

class JetDatabase : public Database {
public:
    explicit JetDatabase(std::shared_ptr<const PageFile> file) : file_(std::move(file)) {}

    [[nodiscard]] std::unique_ptr<RecordSet> OpenRecordset(const std::string& query) override
    {
        return std::make_unique<JetRecordSet>(RunQuery(file_, query));
    }

private:
    std::shared_ptr<const PageFile> file_;
};

}  // namespace

std::unique_ptr<Database> OpenDatabaseFile(std::unique_ptr<ByteSource> source, const std::string& name,
                                           const std::string& password)
{
    auto file = OpenPageFile(std::move(source), name);
    CheckPassword(*file, password);
    return std::make_unique<JetDatabase>(std::move(file));
}

std::shared_ptr<const PageFile> OpenPageFile(std::shared_ptr<const ByteSource> source,
                                             const std::string& name)
{
    return ReportingDamage(name, [&] {
        auto file = std::make_shared<const PageFile>(std::move(source), name);
        static_cast<void>(ReadCatalogueDefinition(*file));
        return file;
    });
}

void CheckPassword(const PageFile& file, const std::string& password)
{
    if (!file.Password().empty() && file.Password() != password)
        throw Failure(failure::kInvalidPassword, "Not a valid password for the database " + file.Name());
}

std::shared_ptr<const OrderedRows> RunQuery(const std::shared_ptr<const PageFile>& file,
                                            const std::string& queryText)
{
    const Query query = ParseQuery(queryText);
    return ReportingDamage(file->Name(), [&] {
        file->ForgetPages();
        return std::make_shared<const OrderedRows>(FindRows(file, query));
    });
}

Query ParseQuery(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    const bool matches = std::ranges::equal(words, kWords, [](const std::string& word, const char* expected) {
        return expected == nullptr ? IsName(word) : LowerCase(word) == expected;
    });
    if (!matches)
        throw Failure(failure::kInvalidCall, "Not a query that can be run: " + text);
    return {words[kTable], words[kColumn]};
}

}  // namespace platform::jet
