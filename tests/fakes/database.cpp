#include "fakes/database.h"

#include <utility>

#include "platform/failure.h"

namespace platform::fakes {
namespace {

class Database : public platform::Database, private Journaled {
public:
    Database(Journal& journal, std::vector<Row> rows)
        : Journaled(journal, "TransactionDB"), journal_(journal), rows_(std::move(rows))
    {}

    [[nodiscard]] std::unique_ptr<platform::RecordSet> OpenRecordset(const std::string& query) override
    {
        Call("OpenRecordset", query);
        return std::make_unique<RecordSet>(journal_, "TransactionSet", rows_);
    }

private:
    Journal& journal_;
    std::vector<Row> rows_;
};

Failure NoCurrentRecord()
{
    return {failure::kNoCurrentRecord, "No current record"};
}

}  // namespace

RecordSet::RecordSet(Journal& journal, const std::string& name, std::vector<Row> rows)
    : Journaled(journal, name), rows_(std::move(rows))
{}

std::int64_t RecordSet::RecordCount() const
{
    Call("RecordCount");
    return static_cast<std::int64_t>(rows_.size());
}

bool RecordSet::AtEOF() const
{
    Call("AtEOF");
    return position_ == rows_.size();
}

Value RecordSet::Field(const std::string& column) const
{
    Call("Field", column);
    if (position_ == rows_.size())
        throw NoCurrentRecord();
    const auto found = rows_[position_].find(column);
    if (found == rows_[position_].end())
        throw Failure(failure::kNoSuchColumn, "There is no column \"" + column + "\"");
    return found->second;
}

void RecordSet::MoveNext()
{
    Call("MoveNext");
    if (position_ == rows_.size())
        throw NoCurrentRecord();
    ++position_;
}

void RecordSet::MoveFirst()
{
    Call("MoveFirst");
    if (rows_.empty())
        throw NoCurrentRecord();
    position_ = 0;
}

std::unique_ptr<platform::Database> DatabaseEngine::OpenDatabase(const std::string& path,
                                                                 const std::string& connect)
{
    Call("OpenDatabase", connect.empty() ? path : path + " " + connect);
    return std::make_unique<Database>(journal_, rows);
}

}  // namespace platform::fakes
