#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <set>

#include "jet/read_everything.h"
#include "platform/failure_numbers.h"

namespace platform::jet {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uintmax_t kLargestBase = 200'000;
constexpr int kCopiesOfEach = 120;
constexpr std::size_t kPageSize = 2048;  // of Jet 3; half a page of Jet 4
constexpr std::size_t kPageHead = 64;

const std::set<int> kFailuresOfDamage = {failure::kOverflow,          failure::kDatabaseDamaged,
                                         failure::kInvalidPassword,   failure::kUnrecognisedFormat,
                                         failure::kNoSuchQueryColumn, failure::kTableNotFound,
                                         failure::kNoSuchColumn};

/// Damages a copy of a database here and there, more often where pages keep their structure.
class Vandal {
public:
    explicit Vandal(std::uint32_t seed) : random_(seed) {}

    Bytes Damaged(Bytes bytes)
    {
        for (std::size_t strokes = 1 + Below(4); strokes > 0 && !bytes.empty(); --strokes)
            Strike(bytes);
        return bytes;
    }

private:
    std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }

    std::size_t Place(const Bytes& bytes)
    {
        if (Below(2) == 0)
            return Below(bytes.size());
        const std::size_t page = Below(bytes.size() / kPageSize);
        return std::min(page * kPageSize + Below(kPageHead), bytes.size() - 1);
    }

    void Overwrite(Bytes& bytes, std::size_t length, const std::function<std::uint8_t()>& byte)
    {
        const std::size_t begin = Place(bytes);
        for (std::size_t at = begin; at < std::min(begin + length, bytes.size()); ++at)
            bytes[at] = byte();
    }

    void Strike(Bytes& bytes)
    {
        switch (Below(6)) {
            case 0:
                bytes[Place(bytes)] ^= static_cast<std::uint8_t>(1U << Below(8));
                break;
            case 1:
                Overwrite(bytes, 1 + Below(4), [this] { return static_cast<std::uint8_t>(random_()); });
                break;
            case 2:
                Overwrite(bytes, 1 + Below(4), [] { return std::uint8_t{0xFF}; });
                break;
            case 3:
                Overwrite(bytes, 1 + Below(300), [] { return std::uint8_t{0}; });
                break;
            case 4:
                CopyPage(bytes);
                break;
            default:
                if (Below(8) == 0)
                    bytes.resize(Below(bytes.size()));
        }
    }

    void CopyPage(Bytes& bytes)
    {
        const std::size_t pages = bytes.size() / kPageSize;
        const auto page = [&] {
            return bytes.begin() + static_cast<std::ptrdiff_t>(Below(pages) * kPageSize);
        };
        if (pages > 1)
            std::copy_n(page(), kPageSize, page());
    }

    std::mt19937 random_;
};

Bytes ReadFile(const fs::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<fs::path> BaseFiles(const fs::path& folder)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const auto extension = entry.path().extension();
        if ((extension == ".mdb" || extension == ".sdd") && entry.file_size() <= kLargestBase)
            files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

TEST(Damage, GivesDataOrAFailureAndNothingElse)
{
    const char* const folder = std::getenv("TRELLIVAN_CORPUS");
    if (folder == nullptr)
        GTEST_SKIP() << "TRELLIVAN_CORPUS names no folder";
    int copies = 0;
    int complete = 0;
    for (const fs::path& file : BaseFiles(folder)) {
        const Bytes sound = ReadFile(file);
        for (std::uint32_t seed = 0; seed < kCopiesOfEach; ++seed) {
            SCOPED_TRACE(file.filename().string() + ", seed " + std::to_string(seed));
            const Outcome outcome = ReadEverything(Vandal(seed).Damaged(sound), "4073");
            ++copies;
            complete += outcome.failures.empty() ? 1 : 0;
            for (const Failure& failure : outcome.failures) {
                EXPECT_TRUE(kFailuresOfDamage.contains(failure.Number())) << failure.Number();
                EXPECT_FALSE(failure.Description().empty());
            }
        }
    }
    std::cout << copies << " damaged copies, " << complete << " read to the end, " << copies - complete
              << " with failures\n";
    EXPECT_GT(copies, 0) << "no databases in " << folder;
}

}  // namespace
}  // namespace platform::jet
