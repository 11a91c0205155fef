#include <gtest/gtest.h>

#include <array>

#include "platform/failure_numbers.h"
#include "platform/jet/exact_number.h"
#include "platform/jet/query.h"
#include "platform/jet/rc4.h"
#include "support/failure_of.h"

namespace platform::jet {
namespace {

TEST(ExactNumber, HasItsDigitsAndNoMore)
{
    struct Case {
        bool negative;
        Magnitude magnitude;
        std::size_t scale;
        const char* digits;
    };
    const std::vector<Case> cases = {
        {false, {0, 0, 0, 0}, 4, "0"},
        {true, {0, 0, 0, 0}, 0, "0"},
        {true, {0, 0, 0, 125}, 1, "-12.5"},
        {false, {0, 0, 0, 5}, 4, "0.0005"},
        {false, {0, 0, 0, 120'000}, 4, "12"},
        {false, {0, 0, 0, 100}, 0, "100"},
        {true, {0, 0, 0x80000000, 0}, 4, "-922337203685477.5808"},
        {false, {0, 0, 1, 0}, 0, "4294967296"},
        {false, {~0U, ~0U, ~0U, ~0U}, 28, "34028236692.0938463463374607431768211455"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ToExactNumber(c.negative, c.magnitude, c.scale).digits, c.digits);
}

TEST(Rc4, GivesThePublishedStream)
{
    const std::array<std::uint8_t, 3> key = {'K', 'e', 'y'};
    std::array<std::uint8_t, 9> bytes = {'P', 'l', 'a', 'i', 'n', 't', 'e', 'x', 't'};
    ApplyRc4(key, bytes);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 9>{0xBB, 0xF3, 0x16, 0xE8, 0xD9, 0x40, 0xAF, 0x0A, 0xD3}));
}

TEST(Query, IsTheOneThatIsUnderstood)
{
    const Query query = ParseQuery("select *\n FROM  Trans_2 Order By REF");
    EXPECT_EQ(query.table, "Trans_2");
    EXPECT_EQ(query.orderColumn, "REF");
    for (const char* text : {"", "SELECT * FROM trans", "SELECT ref FROM trans ORDER BY ref",
                             "SELECT * FROM trans ORDER BY ref DESC", "SELECT * FROM [trans] ORDER BY ref",
                             "DELETE * FROM trans ORDER BY ref"})
        EXPECT_EQ(FailureOf([&] { (void)ParseQuery(text); }), failure::kInvalidCall) << text;
}

}  // namespace
}  // namespace platform::jet
