#include "platform/jet/column_value.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "jet/made_database.h"
#include "platform/failure.h"
#include "platform/jet/sorting.h"
#include "support/failure_of.h"

namespace platform::jet {
namespace {

using Bytes = std::vector<std::uint8_t>;

template <class Number>
Bytes BytesOf(Number number)
{
    const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(Number)>>(number);
    return {bytes.begin(), bytes.end()};
}

/// A decimal of 10^-3: sign, then four numbers of 32 bits, most significant first.
Bytes Decimal(bool negative, std::array<std::uint32_t, 4> magnitude)
{
    Bytes bytes = {static_cast<std::uint8_t>(negative ? 0x80 : 0)};
    for (const std::uint32_t part : magnitude)
        std::ranges::copy(BytesOf(part), std::back_inserter(bytes));
    return bytes;
}

/// A Jet 4 row of one column, of fixed length, and the file that it could stand in.
class OneColumn {
public:
    OneColumn(ColumnType type, const Bytes& bytes, bool maskBit = true)
        : column_{"x", type, 0, 0, true, 0, static_cast<std::uint16_t>(bytes.size()), 3},
          row_(Stored(bytes, maskBit), TableDefinition{}, Format::kJet4)
    {}

    [[nodiscard]] Value Read() const { return ReadValue(file_, row_, column_); }

    /// Any key as bytes that order alike.
    [[nodiscard]] std::string Key() const
    {
        if (!IsOrderedByNumber(column_.type))
            return ByteSortKey(file_, row_, column_);
        const std::string digits = std::to_string(NumberSortKey(row_, column_).value_or(0));
        return std::string(20 - digits.size(), '0') + digits;
    }

private:
    static StoredRow Stored(Bytes bytes, bool maskBit)
    {
        bytes.insert(bytes.begin(), {1, 0});
        bytes.push_back(maskBit ? 1 : 0);
        const Page page{std::move(bytes)};
        return {page, page.View()};
    }

    PageFile file_{Memory(tools::DatabaseBytes({})), "memory"};
    Column column_;
    Row row_;
};

TEST(ColumnValue, IsWhatItsTypeSays)
{
    const Bytes guid = {0x01, 0x9F, 0xA5, 0x32, 0x34, 0xAA, 0x29, 0x3E,
                        0x45, 0x3F, 0x45, 0x23, 0x45, 0x3C, 0xD2, 0xE6};
    const std::vector<std::tuple<ColumnType, Bytes, Value>> cases = {
        {ColumnType::kBoolean, {}, true},
        {ColumnType::kByte, {0xFF}, 255},
        {ColumnType::kInteger, BytesOf(std::int16_t{-2}), -2},
        {ColumnType::kLong, BytesOf(std::int32_t{-70'000}), -70'000},
        {ColumnType::kCurrency, BytesOf(std::int64_t{-12'3400}), ExactNumber{"-12.34"}},
        {ColumnType::kCurrency, BytesOf(std::numeric_limits<std::int64_t>::min()),
         ExactNumber{"-922337203685477.5808"}},
        {ColumnType::kSingle, BytesOf(0.1F), 0.1F},
        {ColumnType::kDouble, BytesOf(-1e300), -1e300},
        {ColumnType::kDate, BytesOf(-1.25), FromDayNumber(-1.25)},
        {ColumnType::kBinary, {1, 0, 2}, Binary{{1, 0, 2}}},
        {ColumnType::kText, {'a', 0}, std::string("a")},
        {ColumnType::kGuid, guid, Guid{"{32A59F01-AA34-3E29-453F-4523453CD2E6}"}},
        {ColumnType::kDecimal, Decimal(true, {0, 0, 1, 500}), ExactNumber{"-4294967.796"}},
        {ColumnType::kDecimal, Decimal(true, {0, 0, 0, 0}), ExactNumber{"0"}},
        {ColumnType::kDecimal, Decimal(false, {0, 0, 0, 5}), ExactNumber{"0.005"}},
        {ColumnType::kDecimal, Decimal(false, {0, 0, 0, 120'500}), ExactNumber{"120.5"}},
        {ColumnType::kDecimal, Decimal(true, {0, 0, 0, 120'000}), ExactNumber{"-120"}},
        {ColumnType::kDecimal, Decimal(false, {~0U, ~0U, ~0U, ~0U}),
         ExactNumber{"340282366920938463463374607431768211.455"}},
    };
    for (const auto& [type, bytes, value] : cases) {
        EXPECT_EQ(OneColumn(type, bytes).Read(), value) << static_cast<int>(type);
        const Value absent = type == ColumnType::kBoolean ? Value(false) : Value(Null{});
        EXPECT_EQ(OneColumn(type, bytes, false).Read(), absent) << static_cast<int>(type);
    }
}

TEST(ColumnValue, ThatMakesNoSenseIsRefused)
{
    EXPECT_THROW((void)OneColumn(static_cast<ColumnType>(99), {1}).Read(), Damage);
    EXPECT_THROW((void)OneColumn(ColumnType::kMemo, {5, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 'a'}).Read(),
                 Damage)
        << "shorter than it says";
    EXPECT_THROW((void)OneColumn(ColumnType::kMemo, {5, 0, 0, 0}).Read(), Damage) << "a pointer to nowhere";
    EXPECT_EQ(FailureOf([] { (void)OneColumn(ColumnType::kDate, BytesOf(1e9)).Read(); }), failure::kOverflow);
}

TEST(LongValue, OfManyBlocksIsReadToItsEndUnlessOnlyItsBeginningIsWanted)
{
    tools::Layout layout = tools::kJet4Layout;
    layout.longValueRow = 5;  // a pointer and one byte
    tools::MemoryPages pages;
    tools::PageOutput output(pages, layout);
    output.Write(output.Allocate(), tools::DatabaseBytes({}).substr(0, layout.pageSize));
    tools::LongValues values(output, 0);
    const std::string stored = values.Store(std::string(300, 'x'));
    values.Flush();
    const PageFile file(Memory(pages.Content()), "memory");
    const Bytes reference(stored.begin(), stored.end());
    EXPECT_EQ(ReadLongValue(file, ByteView(reference)), Bytes(300, 'x'));
    EXPECT_EQ(ReadLongValueBeginning(file, ByteView(reference), 7), Bytes(7, 'x'));
    EXPECT_EQ(ReadLongValueBeginning(file, ByteView(reference), 300), Bytes(16, 'x'));
}

TEST(SortKey, OrdersAsTheValuesDo)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const std::pair<ColumnType, std::vector<Bytes>> ascending[] = {
        {ColumnType::kByte, {{0}, {127}, {128}, {255}}},
        {ColumnType::kInteger,
         {BytesOf(std::int16_t{-300}), BytesOf(std::int16_t{-1}), BytesOf(std::int16_t{2})}},
        {ColumnType::kCurrency, {BytesOf(std::int64_t{-9'000'000'000}), BytesOf(std::int64_t{0})}},
        {ColumnType::kSingle, {BytesOf(-2.5F), BytesOf(-0.5F), BytesOf(0.0F), BytesOf(1e-30F)}},
        {ColumnType::kDouble, {BytesOf(-infinity), BytesOf(-1e-300), BytesOf(0.0), BytesOf(infinity)}},
        {ColumnType::kDecimal,
         {Decimal(true, {0, 1, 0, 0}), Decimal(true, {0, 0, 0, 1}), Decimal(true, {0, 0, 0, 0}),
          Decimal(false, {0, 0, 0, 255}), Decimal(false, {0, 0, 0, 256}), Decimal(false, {1, 0, 0, 0})}},
        {ColumnType::kBinary, {{}, {0}, {1}, {1, 0}, {0xFF}}},
    };
    for (const auto& [type, values] : ascending)
        for (std::size_t i = 1; i < values.size(); ++i)
            EXPECT_LT(OneColumn(type, values[i - 1]).Key(), OneColumn(type, values[i]).Key())
                << static_cast<int>(type) << ", value " << i;
    EXPECT_EQ(OneColumn(ColumnType::kDouble, BytesOf(-0.0)).Key(),
              OneColumn(ColumnType::kDouble, BytesOf(0.0)).Key());
    EXPECT_LT(OneColumn(ColumnType::kBoolean, {}, true).Key(),
              OneColumn(ColumnType::kBoolean, {}, false).Key());
}

}  // namespace
}  // namespace platform::jet
