#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// A list of any number of lines, in the order in which they were added, with at most one selected.
class ListBox {
public:
    virtual ~ListBox() = default;

    /// Appends a line, which may hold line breaks and any other character. The selection stays.
    virtual void AddItem(const std::string& line) = 0;

    /// Selects the line of this index, counted from 0, and scrolls it into view; -1 selects none.
    /// Failure: kInvalidPropertyValue where there is no such line.
    virtual void SetListIndex(std::int16_t index) = 0;

    /// Removes all lines.
    virtual void Clear() = 0;
};

}  // namespace platform
