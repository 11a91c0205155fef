#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/failure.h"
#include "platform/jet/page_file.h"
#include "platform/jet/row.h"
#include "platform/jet/row_position.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {

/// The rows of a table at known positions, each read when its first value is asked for.
class JetRecordSet : public RecordSet {
public:
    JetRecordSet(std::shared_ptr<const PageFile> file, TableDefinition table,
                 std::vector<RowPosition> positions);

    [[nodiscard]] std::int64_t RecordCount() const override;
    [[nodiscard]] bool AtEOF() const override;
    [[nodiscard]] Value Field(const std::string& column) const override;
    void MoveNext() override;
    void MoveFirst() override;

private:
    [[nodiscard]] const Row& CurrentRow() const;
    [[nodiscard]] Failure NoCurrentRecord() const;

    std::shared_ptr<const PageFile> file_;
    TableDefinition table_;
    std::vector<RowPosition> positions_;
    std::size_t current_ = 0;
    mutable std::optional<Row> row_;  // the current row, once it has been read
};

}  // namespace platform::jet
