#include <gtest/gtest.h>

#include "fakes/database.h"
#include "make_database/database_writer.h"
#include "platform/failure.h"
#include "platform/jet/engine.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace platform {
namespace {

/// Makes record sets of a table whose refs are 1 to `count`, each with the text "record".
class FakeDatabase {
public:
    std::unique_ptr<RecordSet> Open(int count)
    {
        engine_.rows.clear();
        for (int ref = 1; ref <= count; ++ref)
            engine_.rows.push_back({{"ref", ref}, {"rawtransaction", "record"}, {"timestamp", Null{}}});
        return engine_.OpenDatabase("/shop.mdb", "")->OpenRecordset("SELECT * FROM trans ORDER BY ref");
    }

private:
    fakes::Journal journal_;
    fakes::DatabaseEngine engine_{journal_, "engine"};
};

class RealDatabase {
public:
    std::unique_ptr<RecordSet> Open(int count)
    {
        std::vector<tools::Receipt> receipts;
        for (int ref = count; ref >= 1; --ref)
            receipts.push_back({ref, "record", std::nullopt, std::nullopt});
        WriteFile(folder_.Path("shop.mdb"), tools::DatabaseBytes(receipts));
        return engine_.OpenDatabase(folder_.Path("shop.mdb"), "")
            ->OpenRecordset("SELECT * FROM trans ORDER BY ref");
    }

private:
    TemporaryFolder folder_;
    jet::Engine engine_;
};

template <class Database>
class DatabaseContract : public testing::Test {
protected:
    Database its;
};

using Kinds = testing::Types<FakeDatabase, RealDatabase>;
TYPED_TEST_SUITE(DatabaseContract, Kinds);

TYPED_TEST(DatabaseContract, ARecordSetOutlivesItsDatabaseAndStandsOnItsFirstRow)
{
    const auto records = this->its.Open(2);
    EXPECT_EQ(records->RecordCount(), 2);
    for (const int ref : {1, 2}) {
        EXPECT_FALSE(records->AtEOF());
        EXPECT_EQ(records->Field("ref"), Value(ref));
        records->MoveNext();
    }
    EXPECT_TRUE(records->AtEOF());
    EXPECT_EQ(FailureOf([&] { records->MoveNext(); }), failure::kNoCurrentRecord);
    EXPECT_EQ(FailureOf([&] { return records->Field("ref"); }), failure::kNoCurrentRecord);
    records->MoveFirst();
    EXPECT_EQ(records->Field("ref"), Value(1));
}

TYPED_TEST(DatabaseContract, AnEmptyTableHasNoFirstRecord)
{
    const auto records = this->its.Open(0);
    EXPECT_EQ(records->RecordCount(), 0);
    EXPECT_TRUE(records->AtEOF());
    EXPECT_EQ(FailureOf([&] { records->MoveFirst(); }), failure::kNoCurrentRecord);
}

TYPED_TEST(DatabaseContract, ColumnsHaveTheirNamesInAnyLetterCase)
{
    const auto records = this->its.Open(1);
    EXPECT_EQ(records->Field("RawTransaction"), Value("record"));
    EXPECT_EQ(records->Field("TIMESTAMP"), Value(Null{}));
    EXPECT_EQ(FailureOf([&] { return records->Field("raw"); }), failure::kNoSuchColumn);
}

}  // namespace
}  // namespace platform
