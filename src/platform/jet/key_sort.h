#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>

#include "platform/jet/row_position.h"

namespace platform::jet {

/// How many bytes of keys a sort holds at a time, beside 32 bytes a row.
inline constexpr std::size_t kKeyBytesHeld = std::size_t{16} << 20;

/// Puts rows into ascending order of their keys, equal keys into the order of storage. `keyOf` reads a row's key;
/// it is asked again for rows whose keys are alike in as many bytes as could be held.
void SortByKey(std::span<RowPosition> rows, const std::function<std::string(RowPosition)>& keyOf,
               std::size_t keyBytesHeld = kKeyBytesHeld);

}  // namespace platform::jet
