#pragma once

#include <cstddef>
#include <istream>
#include <vector>

#include "make_database/csv_reader.h"
#include "make_database/database_writer.h"

namespace tools {

/// Reads receipts from a CSV in UTF-8. Its first record names columns of the table `trans`, each at most once
/// and in any order, `ref` among them; a column that is not named is null in every row. A field that is empty
/// without quotes is null. Date-times are in ISO 8601 (see DayNumberOfIso).
class ReceiptReader {
public:
    /// Reads the first record. The stream must outlive the reader. Failure (FailAtLine): no record, a name
    /// that is unknown or stands twice, no `ref`.
    explicit ReceiptReader(std::istream& text);

    /// Reads the next receipt; false at the end. Failure (FailAtLine): the wrong number of fields, a value
    /// that is none of its column, a text that is not valid UTF-8.
    [[nodiscard]] bool Next(Receipt& receipt);

    /// The line on which the receipt read last begins.
    [[nodiscard]] std::size_t Line() const { return record_.line; }

private:
    enum class Target { kRef, kRawTransaction, kTimestamp, kDateTimestamp };

    Target TargetOf(const CsvField& name) const;
    void SetField(Receipt& receipt, Target target, const CsvField& field) const;

    CsvReader csv_;
    CsvRecord record_;
    std::vector<Target> targets_;
};

}  // namespace tools
