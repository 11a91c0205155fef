#include "platform/jet/record_set.h"

#include <utility>

#include "platform/failure.h"
#include "platform/jet/column_value.h"
#include "platform/jet/damage_report.h"

namespace platform::jet {

JetRecordSet::JetRecordSet(std::shared_ptr<const PageFile> file, TableDefinition table,
                           std::vector<RowPosition> positions)
    : file_(std::move(file)), table_(std::move(table)), positions_(std::move(positions))
{}

std::int64_t JetRecordSet::RecordCount() const
{
    return static_cast<std::int64_t>(positions_.size());
}

bool JetRecordSet::AtEOF() const
{
    return current_ == positions_.size();
}

Value JetRecordSet::Field(const std::string& column) const
{
    const Column* const found = table_.Find(column);
    if (found == nullptr)
        throw Failure(failure::kNoSuchColumn,
                      "There is no column " + column + " in the records of " + file_->Name());
    if (AtEOF())
        throw NoCurrentRecord();
    const auto read = [&] { return ReadValue(*file_, CurrentRow(), *found); };
    return ReportingDamage(file_->Name(), [&] {
        return InTable(table_.name, [&] { return OnPage(positions_[current_].Page(), read); });
    });
}

void JetRecordSet::MoveNext()
{
    if (AtEOF())
        throw NoCurrentRecord();
    ++current_;
    row_.reset();
}

void JetRecordSet::MoveFirst()
{
    if (positions_.empty())
        throw NoCurrentRecord();
    current_ = 0;
    row_.reset();
}

const Row& JetRecordSet::CurrentRow() const
{
    if (!row_)
        row_.emplace(FetchRow(*file_, positions_[current_], table_.page), table_, file_->FileFormat());
    return *row_;
}

Failure JetRecordSet::NoCurrentRecord() const
{
    return {failure::kNoCurrentRecord, "There is no current record in " + file_->Name()};
}

}  // namespace platform::jet
