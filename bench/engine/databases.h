#pragma once

#include <cstdint>
#include <string>

namespace bench {

enum class Storage {
    kIndexed,  // in the order of ref, with an index
    kInOrder,  // the same without an index
    kShuffled  // in no order, without an index
};

/// Makes a Jet 4 database of recorded transactions, with receipts of about 200 characters, and waits until it
/// is on the disk. Failure.
void MakeDatabase(const std::string& path, std::int32_t receipts, Storage storage);

}  // namespace bench
