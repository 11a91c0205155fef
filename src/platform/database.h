#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/value.h"

namespace platform {

/// The rows of a query in their order, with a cursor on the current row or past the last one.
///
/// Values are read from the file when they are asked for. Where another program has changed, cut or removed it since,
/// that call is a Failure (kDatabaseDamaged). A record set may outlive its database.
class RecordSet {
public:
    virtual ~RecordSet() = default;

    [[nodiscard]] virtual std::int64_t RecordCount() const = 0;

    /// True when the cursor stands past the last row.
    [[nodiscard]] virtual bool AtEOF() const = 0;

    /// The value of a column in the current row; the name matches without regard to case. Failure:
    /// kNoSuchColumn, kNoCurrentRecord past the last row, kOverflow for a date outside the years 100 to 9999.
    [[nodiscard]] virtual Value Field(const std::string& column) const = 0;

    /// Failure: kNoCurrentRecord when the cursor stands past the last row already.
    virtual void MoveNext() = 0;

    /// Failure: kNoCurrentRecord on an empty set.
    virtual void MoveFirst() = 0;
};

/// An open database file.
class Database {
public:
    virtual ~Database() = default;

    /// Runs "SELECT * FROM table ORDER BY column" (names of letters, digits and underscores, words in any
    /// case). A fresh set stands on its first row, or at the end when the table is empty. Rows come in
    /// ascending order of the column, nulls first, equal keys in the order of storage. Failure:
    /// kTableNotFound, kNoSuchQueryColumn, kDatabaseDamaged, kInvalidCall for any other query.
    [[nodiscard]] virtual std::unique_ptr<RecordSet> OpenRecordset(const std::string& query) = 0;
};

/// Opens Access-format files. A file is never written and never locked against others.
class DatabaseEngine {
public:
    virtual ~DatabaseEngine() = default;

    /// `connect` is empty, or a connect string whose part "PWD=..." gives the database password. A password
    /// in the file must match; one that is given for a file without a password is ignored. Failure:
    /// kDatabaseNotFound, kInvalidPassword, kDatabaseCannotBeOpened, kUnrecognisedFormat, kDatabaseDamaged.
    [[nodiscard]] virtual std::unique_ptr<Database> OpenDatabase(const std::string& path,
                                                                 const std::string& connect) = 0;
};

}  // namespace platform
