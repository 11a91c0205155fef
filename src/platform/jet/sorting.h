#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "platform/jet/page_file.h"
#include "platform/jet/row.h"

/// What sorting rows takes: their keys (sort_key.cpp, text_sort_key.cpp for texts), sorting by numbers
/// (number_entry.cpp) and by bytes (key_sort.cpp).
namespace platform::jet {

/// True for columns whose order a number of 64 bits can tell; for the others it takes bytes.
[[nodiscard]] bool IsOrderedByNumber(ColumnType type);

/// A number that orders rows as the column's values do (True before False, as -1 is before 0); nothing for
/// null. Throws Damage.
[[nodiscard]] std::optional<std::uint64_t> NumberSortKey(const Row& row, const Column& column);

/// Bytes that order rows as the column's values do: decimals by value, GUIDs and binary by their bytes, texts
/// as TextSortKey has it. Of a memo the first 255 characters count, of an OLE value the first 510 bytes, as
/// in an index on it: values that are alike so far are equal keys, and no more of them is read. A key has a
/// few KB at most; null has an empty one. Throws Damage.
[[nodiscard]] std::string ByteSortKey(const PageFile& file, const Row& row, const Column& column);

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

/// Sorts in place, digit by digit: for many entries several times as fast as std::sort.
void SortEntries(std::span<NumberEntry> entries);

/// How many bytes of keys a sort holds at a time, beside 32 bytes a row.
inline constexpr std::size_t kKeyBytesHeld = std::size_t{16} << 20;

/// Puts rows into ascending order of their keys, equal keys into the order of storage. `keyOf` reads a row's
/// key; it is asked again for rows whose keys are alike in as many bytes as could be held.
void SortByKey(std::span<RowPosition> rows, const std::function<std::string(RowPosition)>& keyOf,
               std::size_t keyBytesHeld = kKeyBytesHeld);

}  // namespace platform::jet
