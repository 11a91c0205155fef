#include "play/remembered_formats.h"

#include <gtest/gtest.h>

#include "fakes/clock_and_formats.h"

namespace {

using namespace std::chrono_literals;

TEST(RememberedFormats, WriteWhatTheFormatsWriteHoweverOftenAndInWhateverOrder)
{
    const platform::fakes::PlainFormats plain;
    const player::RememberedFormats remembered(plain);
    // Steps that meet the same places of the tables again with other days and times.
    for (const auto step : {1000ms, 1ms, 40009ms, std::chrono::milliseconds(61 * 24h), -86'400'001ms}) {
        for (const int count : {0, 1, 2, 1, 0, 3000, 2, 3000}) {
            const platform::DateTime moment = platform::DayZero() + 38000 * 24h + count * step;
            EXPECT_EQ(remembered.LongTime(moment), plain.LongTime(moment)) << count * step.count();
            EXPECT_EQ(remembered.ShortDate(moment), plain.ShortDate(moment)) << count * step.count();
        }
    }
}

}  // namespace
