#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <vector>

#include "make_database/csv_reader.h"
#include "make_database/database_writer.h"

namespace tools {

/// How the last row of a recording ends that was cut off: by a power failure, say, while it was written.
enum class CsvTail {
    kWhole,      ///< with the end of its line, as every row that record_feed wrote whole
    kNoLineEnd,  ///< the row can be read; its text may lack an end
    kTorn,       ///< in the middle of the row, which was left out
};

/// Reads receipts from a CSV in UTF-8. Its first record names columns of the table `trans`, each at most once
/// and in any order, `ref` among them; a column that is not named is null in every row. A field that is empty
/// without quotes is null. Date-times are in ISO 8601 (see DayNumberOfIso).
///
/// A file with the columns of a recording, in their order, may end in the middle of a row.
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

    /// True for the four columns in the order in which record_feed writes them.
    [[nodiscard]] bool IsRecording() const;

    /// How the last row ends, once Next has returned false. Always kWhole for other files than recordings.
    [[nodiscard]] CsvTail Tail() const { return tail_; }

    /// How many bytes of the text are read up to the end of the last row: a torn row lies behind them.
    [[nodiscard]] std::uint64_t WholeBytes() const { return wholeBytes_; }

private:
    enum class Target { kRef, kRawTransaction, kTimestamp, kDateTimestamp };

    Target TargetOf(const CsvField& name) const;
    void SetFields(Receipt& receipt) const;
    void SetField(Receipt& receipt, Target target, const CsvField& field) const;

    CsvReader csv_;
    CsvRecord record_;
    std::vector<Target> targets_;
    CsvTail tail_ = CsvTail::kWhole;
    std::uint64_t wholeBytes_ = 0;
};

}  // namespace tools
