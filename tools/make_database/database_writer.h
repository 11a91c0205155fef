#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "make_database/index_writer.h"
#include "make_database/layout.h"
#include "make_database/long_values.h"
#include "make_database/page_store.h"
#include "make_database/page_writer.h"
#include "platform/failure.h"

namespace tools {

/// One row of the table `trans`; nothing is null. The text is UTF-8; date-times are day numbers since
/// 30 December 1899, the fraction counting forward also before that day.
struct Receipt {
    std::optional<std::int32_t> ref;
    std::optional<std::string> rawtransaction;
    std::optional<double> timestamp;
    std::optional<double> datetimestamp;
};

struct DatabaseOptions {
    Format format = Format::kJet4;

    /// UTF-8, at most 20 characters; empty for none.
    std::string password;

    /// A primary-key index on `ref`.
    bool index = true;

    /// Jet 4 only: texts with one byte a character where that is shorter.
    bool compress = true;

    /// Receipts of up to so many encoded bytes stay in their row; at most kMostInline.
    std::size_t inlineLimit = 64;
    static constexpr std::size_t kMostInline = 1024;

    /// Creation date as a day number. Not the day of the call, so that the same rows give the same file.
    double created = 36526.5;
};

/// Two rows with the same `ref` under a primary key.
class DuplicateRef : public platform::Failure {
public:
    explicit DuplicateRef(std::int32_t ref);
    [[nodiscard]] std::int32_t Ref() const { return ref_; }

private:
    std::int32_t ref_;
};

/// Writes a database with the one table `trans`, row by row: it holds a few pages and, with an index, 8 bytes
/// a row in memory, so that files of any allowed size can be written.
///
/// The files are complete for readers. They have none of the tables and pages that Access needs to edit them.
/// Rows are stored in the order in which they come.
class DatabaseWriter {
public:
    /// The store must outlive the writer. Failure: kTypeMismatch for a password that does not fit.
    DatabaseWriter(PageStore& store, DatabaseOptions options);

    /// Failure: kTypeMismatch for a text that the format cannot hold, and for a null `ref` under an index,
    /// the row being left out; kOverflow for a file that grows too large; what the store throws.
    void Add(const Receipt& receipt);

    /// Completes the database, once, after the last row. Failure: DuplicateRef (kTypeMismatch); what the
    /// store throws.
    void Finish();

private:
    DatabaseOptions options_;
    PageOutput output_;
    RowPages rows_;
    LongValues receipts_;
    std::uint32_t rowCount_ = 0;
    std::vector<std::uint64_t> indexEntries_;
};

/// A whole database in memory.
[[nodiscard]] Bytes DatabaseBytes(std::span<const Receipt> receipts, const DatabaseOptions& options = {});

}  // namespace tools
