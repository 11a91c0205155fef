#include "platform/jet/sorting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace platform::jet {
namespace {

TEST(KeySort, IsTheSameHoweverLittleOfTheKeysItHolds)
{
    std::mt19937 random(1);
    std::vector<std::string> keys;
    for (int i = 0; i < 2'000; ++i) {
        // Alike for up to 300 bytes, often equal, often one the beginning of another.
        std::string key(100 * (random() % 4), 'x');
        for (std::size_t more = random() % 3; more > 0; --more)
            key.push_back(static_cast<char>(random() % 3 == 0 ? '\xFF' : '\0'));
        keys.push_back(key);
    }
    std::vector<RowPosition> stored;
    for (std::uint32_t i = 0; i < keys.size(); ++i)
        stored.push_back({i});
    std::vector<RowPosition> expected = stored;
    std::ranges::stable_sort(expected, {}, [&](RowPosition position) { return keys[position.packed]; });

    for (const std::size_t held : {std::size_t{0}, std::size_t{100'000}, kKeyBytesHeld}) {
        std::vector<RowPosition> rows = stored;
        SortByKey(
            rows, [&](RowPosition position) { return keys[position.packed]; }, held);
        EXPECT_EQ(rows, expected) << held;
    }
    SortByKey({}, [](RowPosition) { return std::string(); });
}

}  // namespace
}  // namespace platform::jet
