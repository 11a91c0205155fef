#pragma once

#include <cstdint>
#include <span>

#include "platform/jet/row_position.h"

namespace platform::jet {

/// A row's number to sort by and its position, in no more than 12 bytes.
class NumberEntry {
public:
    NumberEntry(std::uint64_t key, RowPosition position)
        : high_(static_cast<std::uint32_t>(key >> 32)),
          low_(static_cast<std::uint32_t>(key)),
          position_(position)
    {}

    [[nodiscard]] std::uint64_t Key() const { return std::uint64_t{high_} << 32 | low_; }
    [[nodiscard]] RowPosition Position() const { return position_; }

    /// The position decides between equal keys.
    bool operator<(const NumberEntry& other) const
    {
        return Key() == other.Key() ? position_ < other.position_ : Key() < other.Key();
    }

private:
    std::uint32_t high_;
    std::uint32_t low_;
    RowPosition position_;
};

/// Sorts in place; for many entries several times as fast as comparing them.
void SortEntries(std::span<NumberEntry> entries);

}  // namespace platform::jet
