#include "platform/jet/sorting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace platform::jet {
namespace {

TEST(KeySort, IsTheSameHoweverLittleOfTheKeysItHolds)
{
    std::mt19937 random(1);
    std::vector<std::string> keys;
    std::vector<RowPosition> stored;
    for (std::uint32_t i = 0; i < 2'000; ++i) {
        // Alike for up to 300 bytes, often equal, often one the beginning of another.
        std::string key(100 * (random() % 4), 'x');
        for (std::size_t more = random() % 3; more > 0; --more)
            key.push_back(random() % 3 == 0 ? '\xFF' : '\0');
        keys.push_back(key);
        stored.push_back({i});
    }
    const auto keyOf = [&](RowPosition position) { return keys[position.packed]; };
    std::vector<RowPosition> expected = stored;
    std::ranges::stable_sort(expected, {}, keyOf);
    for (const std::size_t held : {std::size_t{0}, std::size_t{100'000}, kKeyBytesHeld}) {
        std::vector<RowPosition> rows = stored;
        SortByKey(rows, keyOf, held);
        EXPECT_EQ(rows, expected) << held;
    }
}

TEST(NumberEntries, SortByKeyAndThenByPosition)
{
    std::mt19937_64 random(1);
    const std::function<std::uint64_t()> keys[] = {
        [&] { return random(); },
        [] { return 7; },
        [&] { return (random() & 1) << 63 | (random() & 1); },
        [&] { return random() % 1000 == 0 ? ~std::uint64_t{0} : random() % 100; },
        [&] { return (std::uint64_t{1} << 63) + random() % 5000 - 2500; },
    };
    const auto whole = [](const NumberEntry& entry) {
        return std::pair(entry.Key(), entry.Position().packed);
    };
    for (const auto& key : keys)
        for (const std::uint32_t count : {0U, 1U, 64U, 65U, 5000U}) {
            std::vector<NumberEntry> entries;
            for (std::uint32_t i = 0; i < count; ++i)
                entries.emplace_back(key(), RowPosition{i});
            std::ranges::shuffle(entries, random);
            std::vector<NumberEntry> expected = entries;
            std::ranges::sort(expected, {}, whole);
            SortEntries(entries);
            EXPECT_TRUE(std::ranges::equal(entries, expected, {}, whole, whole)) << count;
        }
}

}  // namespace
}  // namespace platform::jet
