#include <gtest/gtest.h>

#include "fakes/clock_and_formats.h"
#include "fakes/components.h"
#include "fakes/database.h"
#include "platform/failure.h"
#include "play/observed_sockets.h"
#include "play/played_engine.h"
#include "play/tally.h"
#include "play/usage_error.h"
#include "support/failure_of.h"

namespace {

using platform::Value;
using platform::fakes::Row;
using player::RefRange;

std::vector<Row> RowsWith(const std::vector<Value>& refs)
{
    std::vector<Row> rows;
    for (const Value& ref : refs)
        rows.push_back({{"ref", ref}, {"rawtransaction", std::to_string(rows.size())}});
    return rows;
}

/// A record set that is played, and what it tells.
class PlayedFeed {
public:
    PlayedFeed(const std::vector<Row>& rows, const RefRange& range, std::optional<std::int64_t> loops = 1)
        : spans_(range, formats_), engine_({real_, spans_, loops, events_})
    {
        real_.rows = rows;
        records = engine_.OpenDatabase("feed.mdb", "")->OpenRecordset("SELECT * FROM trans ORDER BY ref");
    }

    /// The texts from here to the end, "|" before each that begins the feed anew; at most so many records.
    std::string Play(int most = 100)
    {
        std::string played;
        for (; most > 0 && !records->AtEOF(); --most) {
            played += std::get<std::string>(records->Field("rawtransaction"));
            records->MoveNext();
            played += began_ ? "|" : "";
        }
        return played;
    }

    [[nodiscard]] std::optional<std::int64_t> Total() const { return engine_.Total(); }

    /// The next record is the current one once more.
    void PlayAgain() { again_ = true; }

private:
    bool began_ = false;
    bool again_ = false;
    platform::fakes::Journal journal_;
    platform::fakes::PlainFormats formats_;
    platform::fakes::DatabaseEngine real_{journal_, "real"};
    player::Spans spans_;
    player::RecordEvents events_{
        .opened = [](const platform::RecordSet&) {},
        .movedOn = [this](const platform::RecordSet&, bool beginsAgain) { began_ = beginsAgain; },
        .unreadable = [] {},
        .playsAgain = [this] { return std::exchange(again_, false); }};
    player::PlayedEngine engine_;

public:
    std::unique_ptr<platform::RecordSet> records;
};

std::string Played(const std::vector<Value>& refs, const RefRange& range)
{
    try {
        return PlayedFeed(RowsWith(refs), range).Play();
    } catch (const player::UsageError&) {
        return "refused";
    }
}

TEST(PlayedRecords, BeginAndEndAtTheRefsAskedFor)
{
    const std::vector<Value> numbers = {platform::Null{}, 10, 20, 20, 30};
    const std::vector<Value> texts = {std::string("a9"), std::string("b10"), std::string("B10"),
                                      std::string("b2")};
    const std::vector<Value> exact = {platform::ExactNumber{"-1.5"}, platform::ExactNumber{"2"}};
    const std::vector<Value> days = {platform::DayZero() + std::chrono::days(1),
                                     platform::DayZero() + std::chrono::days(2)};
    const std::tuple<std::vector<Value>, RefRange, std::string> cases[] = {
        {numbers, {}, "01234|"},
        {numbers, {.from = "11"}, "234|"},
        {numbers, {.from = "-5", .to = "10"}, "1|"},
        {numbers, {.to = "29.5"}, "0123|"},
        {numbers, {.from = "20", .to = "20"}, "23|"},
        {numbers, {.from = "30", .to = "1e3"}, "4|"},
        {numbers, {.from = "31"}, "refused"},
        {numbers, {.from = "11", .to = "19"}, "refused"},
        {numbers, {.from = "20", .to = "10"}, "refused"},
        {numbers, {.from = "many"}, "refused"},
        {{10, 20}, {.to = "9"}, "refused"},
        {texts, {.from = "b10", .to = "b10"}, "12|"},
        {texts, {.to = "b2"}, "0123|"},
        {texts, {.from = "b"}, "refused"},
        {exact, {.from = "-1.4"}, "1|"},
        {exact, {.to = "1"}, "0|"},
        {days, {.from = "1900-01-01"}, "1|"},
        {{}, {}, "refused"},
    };
    for (const auto& [refs, range, played] : cases)
        EXPECT_EQ(Played(refs, range), played) << range.from.value_or("") << " to " << range.to.value_or("");
}

TEST(PlayedRecords, BeginAgain)
{
    const auto rows = RowsWith({1, 2, 3, 4});
    const RefRange middle{.from = "2", .to = "3"};
    PlayedFeed twice(rows, middle, 2);
    EXPECT_EQ(twice.Total(), 4);
    EXPECT_EQ(twice.Play(), "12|12|");
    EXPECT_EQ(FailureOf([&] { twice.records->MoveNext(); }), platform::failure::kNoCurrentRecord);
    EXPECT_EQ(FailureOf([&] { return twice.records->Field("ref"); }), platform::failure::kNoCurrentRecord);
    twice.records->MoveFirst();
    EXPECT_EQ(twice.Play(), "12|12|");

    PlayedFeed forever(rows, {}, std::nullopt);
    EXPECT_EQ(forever.Total(), std::nullopt);
    EXPECT_EQ(forever.Play(9), "0123|0123|0");
}

TEST(PlayedRecords, StayAtARecordThatIsToBePlayedAgain)
{
    PlayedFeed feed(RowsWith({1, 2}), {});
    feed.PlayAgain();
    EXPECT_EQ(feed.Play(), "001|");
}

TEST(Tally, DoubtsTheRecordsOfWhichAByteWasNotAcknowledged)
{
    for (const auto& [unacknowledged, inDoubt] :
         {std::pair{0U, 0}, {1U, 1}, {10U, 1}, {11U, 2}, {30U, 3}, {31U, 3}}) {
        player::Tally tally([] { return std::size_t{0}; });
        for (const std::size_t bytes : {10U, 10U, 0U, 10U})
            tally.HandedOver(bytes, true);
        tally.Lost(unacknowledged);
        EXPECT_EQ(tally.InDoubt(), inDoubt) << unacknowledged;
        tally.Connected();
        tally.HandedOver(10, true);
        tally.Lost(100);
        EXPECT_EQ(tally.InDoubt(), inDoubt + 1) << "on the next connection";
    }
}

TEST(DatagramRoom, KeepsARecordThatFindsNoneAndLetsTheLogicLearnOfItOnlyWithAPace)
{
    using platform::Failure;
    using platform::failure::kNoBufferSpace;
    for (const bool isAwaited : {false, true}) {
        platform::fakes::Journal journal;
        platform::fakes::Multicast real(journal, "group");
        player::Tally tally([] { return 0; });
        player::DatagramRoom room{.isAwaited = isAwaited, .isFull = false};
        player::ObservedMulticast observed(real, tally, room);
        const auto send = [&] { observed.SendToGroup({1, 2}, "239.1.2.3", 5015); };
        journal.FailOn("group.SendToGroup", {kNoBufferSpace, "no buffer space"});
        if (isAwaited)
            send();
        else
            EXPECT_EQ(FailureOf([&] { return send(), 0; }), kNoBufferSpace);
        EXPECT_EQ(room.isFull, isAwaited);
        EXPECT_EQ(tally.Records(), 0);
        journal.FailNothing();
        room.isFull = false;
        send();
        EXPECT_EQ(tally.Records(), 1);
        journal.FailOn("group.SendToGroup", {platform::failure::kMessageTooLong, "too long"});
        EXPECT_THROW(send(), Failure);
    }
}

}  // namespace
