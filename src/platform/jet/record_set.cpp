#include "platform/jet/record_set.h"

#include <utility>

#include "platform/failure.h"
#include "platform/jet/column_value.h"
#include "platform/jet/damage_report.h"

namespace platform::jet {

JetRecordSet::JetRecordSet(std::shared_ptr<const OrderedRows> rows) : rows_(std::move(rows)) {}

std::int64_t JetRecordSet::RecordCount() const
{
    return static_cast<std::int64_t>(rows_->positions.size());
}

bool JetRecordSet::AtEOF() const
{
    return current_ == rows_->positions.size();
}

Value JetRecordSet::Field(const std::string& column) const
{
    const Column* const found = rows_->table.Find(column);
    if (found == nullptr)
        throw Failure(failure::kNoSuchColumn,
                      "There is no column " + column + " in the records of " + rows_->file->Name());
    if (AtEOF())
        throw NoCurrentRecord();
    const auto read = [&] { return ReadValue(*rows_->file, CurrentRow(), *found); };
    return ReportingDamage(rows_->file->Name(), [&] {
        return InTable(rows_->table.name, [&] { return OnPage(rows_->positions[current_].Page(), read); });
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
    if (rows_->positions.empty())
        throw NoCurrentRecord();
    current_ = 0;
    row_.reset();
}

const Row& JetRecordSet::CurrentRow() const
{
    if (!row_)
        row_.emplace(FetchRow(*rows_->file, rows_->positions[current_], rows_->table.page), rows_->table,
                     rows_->file->FileFormat());
    return *row_;
}

Failure JetRecordSet::NoCurrentRecord() const
{
    return {failure::kNoCurrentRecord, "There is no current record in " + rows_->file->Name()};
}

}  // namespace platform::jet
