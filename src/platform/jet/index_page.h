#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/jet/byte_view.h"
#include "platform/jet/data_page.h"

namespace platform::jet {

/// One page of an index: entries in ascending order of their bytes. The page's bytes must outlive it.
///
/// An entry is a key and a row's position, in a node also the page below. All but the first leave out the
/// bytes that they share with the first, and these may reach into the position.
class IndexPage {
public:
    /// Throws Damage where an entry does not lie on the page.
    IndexPage(ByteView page, const Layout& layout);

    [[nodiscard]] std::size_t EntryCount() const { return ends_.size(); }

    /// Puts the whole entry, shared bytes included, into `entry`. `number` is below EntryCount().
    void GetEntry(std::size_t number, std::string& entry) const;

    /// The leaf to the right of a leaf, 0 after the last.
    [[nodiscard]] std::uint32_t NextPage() const;

private:
    ByteView page_;
    const Layout& layout_;
    ByteView entries_;
    ByteView shared_;
    std::vector<std::size_t> ends_;
};

/// The position at the end of a leaf's entry. Throws Damage for an entry that is too short, here and in
/// PageBelow.
[[nodiscard]] RowPosition PositionIn(const std::string& leafEntry);

/// The page below that a node's entry leads to.
[[nodiscard]] std::uint32_t PageBelow(const std::string& nodeEntry);

}  // namespace platform::jet
