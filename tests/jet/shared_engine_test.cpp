#include <gtest/gtest.h>

#include <filesystem>

#include "jet/made_database.h"
#include "platform/jet/byte_source.h"
#include "platform/jet/shared_engine.h"
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

TEST(SharedEngine, CostsLittleForEachFurtherReaderAndNothingWhenTheLastIsGone)
{
    constexpr int kReaders = 100;
    constexpr std::size_t kMostBytes = 64 * 1024;
    const TemporaryFolder folder;
    const std::string path = folder.Path("shop.mdb");
    WriteFile(path, tools::DatabaseBytes(Receipts(60'000)));
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    const std::size_t descriptors = OpenDescriptors();
    auto engine = std::make_unique<SharedEngine>();
    std::vector<std::unique_ptr<RecordSet>> sets;
    const auto open = [&] {
        sets.push_back(engine->OpenDatabase(path, "")->OpenRecordset(kQuery));
        for (std::size_t i = 1; i < sets.size(); ++i)
            sets.back()->MoveNext();
    };
    open();
    const std::size_t bytes = BytesAllocated();
    for (int i = 0; i < kReaders; ++i)
        open();
    EXPECT_LT(BytesAllocated() - bytes, kReaders * kMostBytes);
    engine.reset();
    for (std::int32_t ref = 0; const auto& records : sets)
        EXPECT_EQ(records->Field("ref"), Value(++ref)) << "each has a cursor of its own";
    EXPECT_EQ(OpenDescriptors(), descriptors + 1);
    sets.clear();
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST(FileState, TellsWhetherALaterChangeShows)
{
    constexpr std::int64_t kMillisecond = 1'000'000;
    constexpr std::int64_t kSecond = 1'000 * kMillisecond;
    const std::tuple<std::int64_t, std::int64_t, bool> cases[] = {
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

}  // namespace
}  // namespace platform::jet
