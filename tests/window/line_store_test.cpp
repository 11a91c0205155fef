#include "platform/window/line_store.h"

#include <gtest/gtest.h>

namespace platform::window {
namespace {

TEST(LineStore, GivesBackLinesOfAnyLengthAcrossItsBlocks)
{
    const std::size_t block = LineStore::kBlockSize;
    const std::size_t lengths[] = {0, 5, block - 7, 2, 0, 1, block, 3 * block + 1, 0, 4};
    LineStore store;
    std::vector<std::string> lines;
    for (const std::size_t length : lengths) {
        std::string line(length, static_cast<char>('a' + lines.size()));
        if (length > 1)
            line.front() = '\0';
        store.Append(line);
        lines.push_back(std::move(line));
    }
    ASSERT_EQ(store.Count(), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(store.Line(i), lines[i]) << "line " << i;
        EXPECT_EQ(store.Line(i, 3), lines[i].substr(0, 3)) << "line " << i;
    }
}

TEST(LineStore, FindsAnyOfTenMillionLinesAndStartsAnewAfterClear)
{
    constexpr std::size_t kLines = 10'000'000;
    LineStore store;
    for (std::size_t i = 0; i < kLines; ++i)
        store.Append(std::to_string(i));
    EXPECT_EQ(store.Count(), kLines);
    for (const std::size_t index : {std::size_t{0}, kLines / 3, kLines - 1})
        EXPECT_EQ(store.Line(index), std::to_string(index));
    store.Clear();
    store.Append("first");
    EXPECT_EQ(store.Count(), 1U);
    EXPECT_EQ(store.Line(0), "first");
}

}  // namespace
}  // namespace platform::window
