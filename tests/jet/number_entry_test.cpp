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

using Pairs = std::vector<std::pair<std::uint64_t, std::uint32_t>>;

Pairs Sorted(const Pairs& pairs)
{
    std::vector<NumberEntry> entries;
    for (const auto& [key, position] : pairs)
        entries.emplace_back(key, RowPosition{position});
    SortEntries(entries);
    Pairs sorted;
    for (const NumberEntry& entry : entries)
        sorted.emplace_back(entry.Key(), entry.Position().packed);
    return sorted;
}

TEST(NumberEntries, SortByKeyAndThenByPosition)
{
    std::mt19937_64 random(1);
    const std::pair<const char*, std::function<std::uint64_t()>> cases[] = {
        {"all bits differ", [&] { return random(); }},
        {"all the same", [] { return 7; }},
        {"few keys", [&] { return random() % 3; }},
        {"the highest and the lowest bit", [&] { return (random() & 1) << 63 | (random() & 1); }},
        {"one far from the others",
         [&] { return random() % 1000 == 0 ? ~std::uint64_t{0} : random() % 100; }},
        {"signed numbers round zero", [&] { return (std::uint64_t{1} << 63) + random() % 5000 - 2500; }},
    };
    for (const auto& [name, key] : cases)
        for (const std::size_t count : {0U, 1U, 64U, 65U, 5000U}) {
            Pairs pairs;
            for (std::uint32_t i = 0; i < count; ++i)
                pairs.emplace_back(key(), i);
            std::ranges::shuffle(pairs, random);
            const Pairs sorted = Sorted(pairs);
            std::ranges::sort(pairs);
            EXPECT_EQ(sorted, pairs) << name << ", " << count;
        }
}

}  // namespace
}  // namespace platform::jet
