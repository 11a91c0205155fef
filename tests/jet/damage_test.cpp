#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "jet/read_everything.h"
#include "make_database/database_writer.h"
#include "platform/failure_numbers.h"
#include "support/files.h"

namespace platform::jet {
namespace {

namespace fs = std::filesystem;
using Bytes = std::string;

constexpr std::uintmax_t kLargestBase = 200'000;
constexpr std::int32_t kMadeRows = 60;
constexpr int kCopiesOfMade = 500;
constexpr int kCopiesOfOthers = 100;
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

    void Overwrite(Bytes& bytes, std::size_t length, const std::function<char()>& byte)
    {
        const std::size_t begin = Place(bytes);
        for (std::size_t at = begin; at < std::min(begin + length, bytes.size()); ++at)
            bytes[at] = byte();
    }

    void Strike(Bytes& bytes)
    {
        switch (Below(6)) {
            case 0: {
                char& byte = bytes[Place(bytes)];
                byte = static_cast<char>(byte ^ (1 << Below(8)));
                break;
            }
            case 1:
                Overwrite(bytes, 1 + Below(4), [this] { return static_cast<char>(random_()); });
                break;
            case 2:
                Overwrite(bytes, 1 + Below(4), [] { return '\xFF'; });
                break;
            case 3:
                Overwrite(bytes, 1 + Below(300), [] { return '\0'; });
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

/// Small databases of both formats: with long receipts, moved about by an index or to be sorted.
std::map<std::string, Bytes> MadeDatabases()
{
    std::vector<tools::Receipt> receipts;
    for (std::int32_t i = 0; i < kMadeRows; ++i) {
        const std::size_t length = i == 0 ? 20'000 : static_cast<std::size_t>(i * 10);
        receipts.push_back({i * 37 % kMadeRows, std::string(length, 'r'), 38047.0 + i, i / 7.0});
    }
    std::map<std::string, Bytes> databases;
    for (const auto format : {tools::Format::kJet3, tools::Format::kJet4})
        for (const bool index : {true, false}) {
            tools::DatabaseOptions options;
            options.format = format;
            options.index = index;
            options.password = "4073";
            const std::string name = format == tools::Format::kJet3 ? "made, Jet 3" : "made, Jet 4";
            databases[name + (index ? ", index" : "")] = DatabaseBytes(receipts, options);
        }
    return databases;
}

/// The made ones and, where TRELLIVAN_CORPUS names a folder, the smaller ones in there.
std::map<std::string, Bytes> BaseDatabases()
{
    std::map<std::string, Bytes> databases = MadeDatabases();
    const char* const folder = std::getenv("TRELLIVAN_CORPUS");
    if (folder == nullptr)
        return databases;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const auto extension = entry.path().extension();
        if ((extension == ".mdb" || extension == ".sdd") && entry.file_size() <= kLargestBase)
            databases[entry.path().filename().string()] = ReadFile(entry.path());
    }
    return databases;
}

class DamageTest : public testing::TestWithParam<std::pair<const std::string, Bytes>> {};

INSTANTIATE_TEST_SUITE_P(Databases, DamageTest, testing::ValuesIn(BaseDatabases()), [](const auto& test) {
    std::string name = test.param.first;
    std::ranges::replace_if(
        name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
});

TEST_P(DamageTest, GivesDataOrAFailureAndNothingElse)
{
    const auto& [name, sound] = GetParam();
    const int copies = name.starts_with("made") ? kCopiesOfMade : kCopiesOfOthers;
    for (int seed = 0; seed < copies; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Outcome outcome =
            ReadEverything(Vandal(static_cast<std::uint32_t>(seed)).Damaged(sound), "4073");
        for (const Failure& failure : outcome.failures)
            EXPECT_TRUE(kFailuresOfDamage.contains(failure.Number())) << failure.Number();
    }
}

}  // namespace
}  // namespace platform::jet
