#pragma once

#include <memory>
#include <string>

#include "platform/database.h"
#include "platform/jet/byte_source.h"
#include "platform/jet/record_set.h"

namespace platform::jet {

/// Opens a database whose bytes come from any source. `name` stands for it in descriptions, `password` is in
/// UTF-8 and ignored where the file has none. Failure: kInvalidPassword, kUnrecognisedFormat,
/// kDatabaseDamaged.
[[nodiscard]] std::unique_ptr<Database> OpenDatabaseFile(std::unique_ptr<ByteSource> source,
                                                         const std::string& name,
                                                         const std::string& password);

/// The same in steps, for databases that share their file. A file whose tables cannot be found is refused
/// when it is opened, not at the first query.
[[nodiscard]] std::shared_ptr<const PageFile> OpenPageFile(std::shared_ptr<const ByteSource> source,
                                                           const std::string& name);
void CheckPassword(const PageFile& file, const std::string& password);

/// Runs a query, reading every page anew. Failure as Database::OpenRecordset has it.
[[nodiscard]] std::shared_ptr<const OrderedRows> RunQuery(const std::shared_ptr<const PageFile>& file,
                                                          const std::string& queryText);

/// The one kind of query that there is: all columns of a table in the order of one.
struct Query {
    std::string table;
    std::string orderColumn;
};

/// Reads "SELECT * FROM table ORDER BY column". Failure: kInvalidCall for anything else.
[[nodiscard]] Query ParseQuery(const std::string& text);

}  // namespace platform::jet
