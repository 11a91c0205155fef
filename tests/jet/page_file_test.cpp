#include "platform/jet/page_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "make_database/database_writer.h"

namespace platform::jet {
namespace {

constexpr std::size_t kPageSize = 4096;
constexpr std::uint32_t kPages = 1'000;  // several times what is kept

/// A file whose pages are filled with their numbers, and which tells how it is read. Editions differ in every page.
struct StampedFile {
    [[nodiscard]] std::uint32_t Stamp(std::uint64_t page) const
    {
        return static_cast<std::uint32_t>(page) + 0x10000 * edition;
    }

    std::uint64_t size = kPages * kPageSize;
    std::uint32_t edition = 1;
    std::uint32_t reads = 0;
    std::uint64_t bytesRead = 0;
};

class StampedSource : public ByteSource {
public:
    explicit StampedSource(StampedFile& file) : file_(file) {}

    [[nodiscard]] std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> buffer) const override
    {
        if (offset == 0) {
            const std::string header = tools::DatabaseBytes({}).substr(0, buffer.size());
            std::memcpy(buffer.data(), header.data(), header.size());
            return header.size();
        }
        ++file_.reads;
        const std::uint64_t end = std::max(offset, std::min(file_.size, offset + buffer.size()));
        file_.bytesRead += end - offset;
        for (std::uint64_t at = offset; at < end; at += sizeof(std::uint32_t)) {
            const std::uint32_t stamp = file_.Stamp(at / kPageSize);
            std::memcpy(&buffer[at - offset], &stamp, std::min<std::uint64_t>(sizeof stamp, end - at));
        }
        return end - offset;
    }

    [[nodiscard]] std::uint64_t Size() const override { return file_.size; }

private:
    StampedFile& file_;
};

class PageFileTest : public testing::Test {
protected:
    void ExpectPage(std::uint32_t number)
    {
        const Page page = pages_.ReadPage(number);
        ASSERT_EQ(page.View().Size(), kPageSize);
        ASSERT_EQ(page.View().U32(0), stamped_.Stamp(number)) << number;
        ASSERT_EQ(page.View().U32(kPageSize - 4), stamped_.Stamp(number)) << number;
    }

    void ReadInOrder()
    {
        for (std::uint32_t number = 1; number < kPages; ++number)
            ExpectPage(number);
    }

    StampedFile stamped_;
    const PageFile pages_{std::make_unique<StampedSource>(stamped_), "stamped"};
};

TEST_F(PageFileTest, GivesThePageThatIsAskedForInAnyOrder)
{
    ReadInOrder();
    for (std::uint32_t number = kPages - 1; number > 0; --number)
        ExpectPage(number);
    std::mt19937 random(1);
    for (int i = 0; i < 5'000; ++i) {
        const std::uint32_t first = 1 + static_cast<std::uint32_t>(random()) % (kPages - 60);
        const std::uint32_t step = 1 + static_cast<std::uint32_t>(random()) % 4;
        for (std::uint32_t number = first; number < first + 12 * step; number += step)
            ExpectPage(number);
    }
}

TEST_F(PageFileTest, ReadsAheadWhenItGoesForward)
{
    ReadInOrder();
    EXPECT_LT(stamped_.reads, kPages / 20);
    EXPECT_LT(stamped_.bytesRead, stamped_.size + 64 * kPageSize);
}

TEST_F(PageFileTest, KeepsWhatItReadLast)
{
    for (int time = 0; time < 100; ++time)
        for (const std::uint32_t number : {700U, 20U, 400U})
            ExpectPage(number);
    EXPECT_EQ(stamped_.reads, 3U);
    EXPECT_EQ(stamped_.bytesRead, 3 * kPageSize) << "reads ahead although it jumps about";
}

TEST_F(PageFileTest, HasNoPageThatTheFileEndsIn)
{
    for (const std::uint64_t size :
         {500 * kPageSize, 500 * kPageSize - 1, 493 * kPageSize + 2, 492 * kPageSize}) {
        pages_.ForgetPages();
        stamped_.size = size;
        const auto whole = static_cast<std::uint32_t>(size / kPageSize);
        EXPECT_EQ(pages_.PageCount(), whole);
        for (std::uint32_t number = 400; number < whole; ++number)
            ExpectPage(number);
        for (std::uint32_t number = whole; number < whole + 40; ++number)
            EXPECT_THROW((void)pages_.ReadPage(number), Damage) << number;
    }
    EXPECT_THROW((void)pages_.ReadPage(0), Damage) << "the header";
}

TEST_F(PageFileTest, ShowsWhatOthersChangedOnceItHasForgotten)
{
    ExpectPage(5);
    ExpectPage(6);  // reads ahead
    ++stamped_.edition;
    pages_.ForgetPages();
    for (std::uint32_t number = 5; number < 9; ++number)
        ExpectPage(number);
}

}  // namespace
}  // namespace platform::jet
