#include <gtest/gtest.h>

#include <filesystem>

#include "make_database/database_writer.h"
#include "platform/failure.h"
#include "platform/jet/byte_source.h"
#include "platform/jet/shared_engine.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

#ifdef __SANITIZE_ADDRESS__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();  // g++ has no header for it
#else
#include <malloc.h>
#endif

namespace platform::jet {
namespace {

namespace fs = std::filesystem;

constexpr const char* kQuery = "SELECT * FROM trans ORDER BY ref";

std::size_t BytesAllocated()
{
#ifdef __SANITIZE_ADDRESS__
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

std::size_t OpenDescriptors()
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

/// The first receipt of a fresh database is "receipt 1".
std::string Bytes(std::int32_t count, const std::string& receipt = "receipt",
                  const std::string& password = "")
{
    std::vector<tools::Receipt> receipts;
    for (std::int32_t ref = 1; ref <= count; ++ref)
        receipts.push_back({ref, receipt + " " + std::to_string(ref), {}, {}});
    tools::DatabaseOptions options;
    options.password = password;
    return DatabaseBytes(receipts, options);
}

class SharedEngineTest : public testing::Test {
protected:
    /// Writes a database that was last changed some hours ago.
    std::string Write(const std::string& name, const std::string& bytes, int hours)
    {
        const std::string path = folder_.Path(name);
        WriteFile(path, bytes);
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(hours));
        return path;
    }

    std::unique_ptr<RecordSet> Open(const std::string& path, const std::string& connect = "")
    {
        return engine_.OpenDatabase(path, connect)->OpenRecordset(kQuery);
    }

    static Value First(const RecordSet& records) { return records.Field("rawtransaction"); }

    TemporaryFolder folder_;
    SharedEngine engine_;
};

TEST_F(SharedEngineTest, CostsLittleForEachFurtherReader)
{
    constexpr int kReaders = 100;
    constexpr std::size_t kMostBytes = 64 * 1024;
    const std::string path = Write("shop.mdb", Bytes(60'000), 1);
    std::vector<std::unique_ptr<Database>> databases;
    std::vector<std::unique_ptr<RecordSet>> sets;
    const auto open = [&] {
        databases.push_back(engine_.OpenDatabase(path, ""));
        sets.push_back(databases.back()->OpenRecordset(kQuery));
        EXPECT_EQ(First(*sets.back()), Value(std::string("receipt 1")));
    };
    open();
    const std::size_t bytes = BytesAllocated();
    const std::size_t descriptors = OpenDescriptors();
    for (int i = 0; i < kReaders; ++i)
        open();
    EXPECT_LT(BytesAllocated() - bytes, kReaders * kMostBytes);
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_F(SharedEngineTest, GivesEachReaderACursorOfItsOwn)
{
    const std::string path = Write("shop.mdb", Bytes(500), 1);
    const auto one = Open(path);
    const auto other = Open(path);
    for (int i = 1; i <= 500; ++i, one->MoveNext()) {
        ASSERT_EQ(one->Field("ref"), Value(i));
        ASSERT_EQ(other->Field("ref"), Value(1 + i / 3));
        if (i % 3 == 2)
            other->MoveNext();
    }
    EXPECT_TRUE(one->AtEOF());
}

TEST_F(SharedEngineTest, ReadsAFileThatWasReplacedOrChangedAnew)
{
    const std::string path = Write("shop.mdb", Bytes(50), 4);
    const auto database = engine_.OpenDatabase(path, "");
    const auto first = database->OpenRecordset(kQuery);

    Write("shop.mdb", Bytes(50, "tpiecer"), 3);
    EXPECT_EQ(First(*Open(path)), Value(std::string("tpiecer 1"))) << "changed in place, of the same size";
    EXPECT_EQ(First(*database->OpenRecordset(kQuery)), Value(std::string("tpiecer 1")))
        << "by an open database";

    fs::remove(path);
    Write("shop.mdb", Bytes(70), 3);
    EXPECT_EQ(Open(path)->RecordCount(), 70) << "another file of this name";
    EXPECT_EQ(first->RecordCount(), 50);

    fs::remove(path);
    EXPECT_EQ(FailureOf([&] { return Open(path); }), failure::kDatabaseNotFound);
}

TEST(FileState, TellsWhetherALaterChangeShows)
{
    constexpr std::int64_t kMillisecond = 1'000'000;
    constexpr std::int64_t kSecond = 1'000 * kMillisecond;
    const struct {
        std::int64_t changed;
        std::int64_t age;
        bool shows;
    } cases[] = {
        {1'500 * kMillisecond, 0, false},
        {1'500 * kMillisecond, 10 * kMillisecond, false},
        {1'500 * kMillisecond, kSecond, true},
        {1'500 * kMillisecond, -kSecond, true},
        {10 * kSecond, 1'900 * kMillisecond, false},
        {10 * kSecond, 3 * kSecond, true},
    };
    for (const auto& [changed, age, shows] : cases) {
        FileState state;
        state.contentChanged = changed;
        EXPECT_EQ(state.ShowsChangesAfter(changed + age), shows) << changed << ", " << age;
    }
}

TEST_F(SharedEngineTest, AsksEachReaderForThePassword)
{
    const std::string path = Write("shop.sdd", Bytes(5, "receipt", "4073"), 1);
    const auto set = Open(path, "PWD=4073");
    EXPECT_EQ(FailureOf([&] { return Open(path, "PWD=4074"); }), failure::kInvalidPassword);
    EXPECT_EQ(FailureOf([&] { return Open(path); }), failure::kInvalidPassword);
    EXPECT_EQ(Open(path, "PWD=4073")->RecordCount(), 5);
}

TEST_F(SharedEngineTest, ClosesWhatNobodyUsesAndKeepsWhatSomeoneDoes)
{
    const std::string path = Write("shop.mdb", Bytes(5), 1);
    const std::size_t descriptors = OpenDescriptors();
    auto set = std::make_unique<SharedEngine>()->OpenDatabase(path, "")->OpenRecordset(kQuery);
    EXPECT_EQ(First(*set), Value(std::string("receipt 1")));
    EXPECT_EQ(OpenDescriptors(), descriptors + 1);
    set.reset();
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

}  // namespace
}  // namespace platform::jet
