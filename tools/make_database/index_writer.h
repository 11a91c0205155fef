#pragma once

#include <cstdint>
#include <vector>

#include "make_database/page_writer.h"

namespace tools {

/// An entry of an index on one long integer column, packed so that numbers order as entries do: the key with
/// its sign bit turned over, the page (24 bits), the row (8 bits).
[[nodiscard]] std::uint64_t IndexEntry(std::int32_t key, RowPointer row);

/// The key of an entry.
[[nodiscard]] std::int32_t IndexKey(std::uint64_t entry);

struct IndexPages {
    std::uint32_t root;
    std::vector<std::uint32_t> pages;
};

/// Writes the pages of an index over entries in ascending order: leaves linked to their neighbours and, above
/// more than one, levels of nodes with one entry for each page below, that page's last entry.
///
/// A leaf entry is 7F and the packed entry's eight bytes, most significant first; a node entry has four more,
/// the page below. A page's entries but the first leave out the bytes that all have in common; a bit mask
/// says where each entry ends (source: index pages written by Access 97 and Access 2000).
[[nodiscard]] IndexPages WriteIndex(PageOutput& output, std::uint32_t definitionPage,
                                    const std::vector<std::uint64_t>& entries);

}  // namespace tools
