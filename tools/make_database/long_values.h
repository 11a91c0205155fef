#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "make_database/bytes.h"
#include "make_database/page_writer.h"

namespace tools {

/// Stores the values of memo columns: short ones in their row, others in one row of a page of long values,
/// the longest as a chain of such rows.
class LongValues {
public:
    /// Values of up to `inlineLimit` bytes stay in their row.
    LongValues(PageOutput& output, std::size_t inlineLimit);

    /// Stores a value and returns what its row holds for it: u32 length with the kind in the two highest
    /// bits, u32 pointer, u32 0, and the value itself where it stays. Each row of a chain begins with the u32
    /// pointer to the next. Failure: kTypeMismatch for a value of more than 0x3FFFFFFF bytes.
    [[nodiscard]] Bytes Store(const Bytes& value);

    void Flush() { rows_.Flush(); }

    /// Numbers of the pages used so far, ascending.
    [[nodiscard]] const std::vector<std::uint32_t>& Pages() const { return rows_.Pages(); }

private:
    RowPointer StoreChain(const Bytes& value);

    std::size_t longestRow_;
    std::size_t inlineLimit_;
    RowPages rows_;
};

}  // namespace tools
