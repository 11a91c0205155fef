#pragma once

#include <cstddef>
#include <optional>

#include "platform/jet/data_page.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {

/// One row, taken apart: which columns are null and where the bytes of the others stand. A row whose parts do
/// not fit into it throws Damage, from the constructor or where the part is asked for.
class Row {
public:
    Row(StoredRow stored, const TableDefinition& table, Format format);

    /// The column's bytes, which last as long as the row; nothing for null.
    [[nodiscard]] std::optional<ByteView> BytesOf(const Column& column) const;

    /// The column's bit in the null mask: set for a value that is not null; of a boolean, the value itself.
    [[nodiscard]] bool MaskBit(const Column& column) const;

private:
    void ReadJet3Tail();
    void ReadJet4Tail();
    [[nodiscard]] std::size_t FixedStart() const;
    [[nodiscard]] std::size_t VariableOffset(std::size_t index) const;

    StoredRow stored_;
    Format format_;
    std::size_t columnCount_ = 0;
    ByteView mask_;
    std::size_t variableCount_ = 0;
    std::size_t offsetsEnd_ = 0;  // the offsets stand before it, the first one nearest
    ByteView jumps_;              // Jet 3, from which column on offsets count from 256 bytes more; last first
};

}  // namespace platform::jet
