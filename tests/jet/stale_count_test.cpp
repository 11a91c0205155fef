#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "jet/memory_source.h"
#include "make_database/bytes.h"
#include "make_database/database_writer.h"
#include "platform/failure.h"
#include "platform/jet/database_file.h"
#include "platform/jet/table_definition.h"
#include "support/failure_of.h"

namespace platform::jet {
namespace {

constexpr std::uint32_t kRows = 90;  // on three pages in Jet 4, on six in Jet 3

using Parameters = std::tuple<tools::Format, bool>;

/// A database of kRows rows whose definition can be made to count others.
class StaleCountTest : public testing::TestWithParam<Parameters> {
protected:
    StaleCountTest()
    {
        std::vector<tools::Receipt> receipts;
        for (std::int32_t ref = 1; ref <= static_cast<std::int32_t>(kRows); ++ref)
            receipts.push_back({ref, std::string(60, 'r'), 0.5, 0.5});
        bytes_ = DatabaseBytes(receipts, {.format = format_, .password = "", .index = index_});
        const PageFile file = File();
        const TableDefinition table = FindTable(file, "trans");
        definition_ = table.page * layout_.pageSize;
        usageMap_ = table.usageMap;
        while (firstPage_ == 0 || !IsOfTable(file.ReadPage(firstPage_), table))
            ++firstPage_;
    }

    void Count(std::uint32_t rows) { tools::Store(bytes_, definition_ + layout_.definition.rowCount, rows); }

    /// A place on the first page of the table's rows.
    [[nodiscard]] std::size_t OnFirstPage(std::size_t offset) const
    {
        return firstPage_ * layout_.pageSize + offset;
    }

    /// How many rows the database opens with; less than 0, the number of the failure.
    [[nodiscard]] std::int64_t Open() const
    {
        std::int64_t rows = 0;
        const int number = FailureOf([&] {
            rows = OpenDatabaseFile(Source(), "memory", "")
                       ->OpenRecordset("SELECT * FROM trans ORDER BY ref")
                       ->RecordCount();
            return rows;
        });
        return number == 0 ? rows : -number;
    }

    const tools::Format format_ = std::get<0>(GetParam());
    const bool index_ = std::get<1>(GetParam());
    const Layout& layout_ = format_ == tools::Format::kJet3 ? kJet3Layout : kJet4Layout;
    std::string bytes_;
    std::size_t definition_ = 0;
    RowPosition usageMap_;
    std::uint32_t firstPage_ = 0;

private:
    static bool IsOfTable(const Page& page, const TableDefinition& table)
    {
        return page.Is(PageType::kData) && page.Owner() == table.page;
    }

    [[nodiscard]] std::unique_ptr<ByteSource> Source() const
    {
        return std::make_unique<MemorySource>(bytes_, 100'000);
    }
    [[nodiscard]] PageFile File() const { return {Source(), "memory"}; }
};

INSTANTIATE_TEST_SUITE_P(Databases, StaleCountTest,
                         testing::Combine(testing::Values(tools::Format::kJet3, tools::Format::kJet4),
                                          testing::Bool()),
                         [](const auto& test) {
                             const std::string format =
                                 std::get<0>(test.param) == tools::Format::kJet3 ? "Jet3" : "Jet4";
                             return format + (std::get<1>(test.param) ? "Index" : "NoIndex");
                         });

TEST_P(StaleCountTest, HidesNoRow)
{
    for (const std::uint32_t count : {0U, 1U, kRows - 1, kRows, kRows + 1, 1'000U}) {
        Count(count);
        EXPECT_EQ(Open(), kRows) << count;
    }
}

TEST_P(StaleCountTest, IsNoExcuseForALostRow)
{
    Count(kRows + 1);
    const std::string sound = bytes_;
    bytes_[OnFirstPage(layout_.data.rowCount)] -= 1;
    EXPECT_EQ(Open(), -failure::kDatabaseDamaged) << "from the end of a page's list";

    bytes_ = sound;
    bytes_[OnFirstPage(0)] = static_cast<char>(PageType::kUsageMap);
    EXPECT_EQ(Open(), -failure::kDatabaseDamaged) << "with its page, which is of another kind";

    bytes_ = sound;
    tools::Store(bytes_, OnFirstPage(4), std::uint32_t{2});
    EXPECT_EQ(Open(), -failure::kDatabaseDamaged) << "with its page, which is another table's";

    if (!index_)
        return;  // a row that is marked as deleted cannot be told from one that was
    bytes_ = sound;
    bytes_[OnFirstPage(layout_.data.rowOffsets + 1)] |= static_cast<char>(0xC0);
    EXPECT_EQ(Open(), -failure::kDatabaseDamaged) << "marked as deleted";
}

TEST_P(StaleCountTest, IsNoExcuseForALostPage)
{
    Count(kRows + 1);
    const std::size_t map = usageMap_.Page() * layout_.pageSize;
    const std::size_t mapRow = ByteView({reinterpret_cast<const std::uint8_t*>(bytes_.data()), bytes_.size()})
                                   .U16(map + layout_.data.rowOffsets + 2 * usageMap_.Row());
    char& marks = bytes_[map + mapRow + 5];
    ASSERT_NE(marks, 0);
    marks = static_cast<char>(marks & (marks - 1));
    EXPECT_EQ(Open(), -failure::kDatabaseDamaged);
}

}  // namespace
}  // namespace platform::jet
