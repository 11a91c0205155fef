#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/failure.h"
#include "platform/jet/page_file.h"
#include "platform/jet/row.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {

/// The rows of a query in their order: all that record sets on the same rows can share. It does not change.
struct OrderedRows {
    std::shared_ptr<const PageFile> file;
    TableDefinition table;
    std::vector<RowPosition> positions;
};

/// A cursor on rows, each of which is read when its first value is asked for. Of its own it has the cursor
/// and the current row with the page that holds it.
class JetRecordSet : public RecordSet {
public:
    explicit JetRecordSet(std::shared_ptr<const OrderedRows> rows);

    [[nodiscard]] std::int64_t RecordCount() const override;
    [[nodiscard]] bool AtEOF() const override;
    [[nodiscard]] Value Field(const std::string& column) const override;
    void MoveNext() override;
    void MoveFirst() override;

private:
    [[nodiscard]] const Row& CurrentRow() const;
    [[nodiscard]] Failure NoCurrentRecord() const;

    std::shared_ptr<const OrderedRows> rows_;
    std::size_t current_ = 0;
    mutable std::optional<Row> row_;  // the current row, once it has been read
};

}  // namespace platform::jet
