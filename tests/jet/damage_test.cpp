#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "jet/read_everything.h"
#include "make_database/database_writer.h"
#include "platform/failure.h"
#include "support/files.h"

namespace platform::jet {
namespace {

namespace fs = std::filesystem;
using Bytes = std::string;

constexpr std::uintmax_t kLargestBase = 200'000;
constexpr std::int32_t kMadeRows = 60;
constexpr std::uint32_t kCopiesOfMade = 500;
constexpr std::uint32_t kCopiesOfOthers = 100;
constexpr std::size_t kPageSize = 2048;  // of Jet 3; half a page of Jet 4
constexpr std::size_t kPageHead = 64;

const std::set<int> kFailuresOfDamage = {failure::kOverflow,          failure::kDatabaseDamaged,
                                         failure::kInvalidPassword,   failure::kUnrecognisedFormat,
                                         failure::kNoSuchQueryColumn, failure::kTableNotFound,
                                         failure::kNoSuchColumn};

/// Damages a copy of a database here and there, more often where pages keep their structure.
class Vandal {
public:
    Vandal(Bytes bytes, std::uint32_t seed) : bytes_(std::move(bytes)), random_(seed) {}

    Bytes Damaged()
    {
        for (std::size_t strokes = 1 + Below(4); strokes > 0 && !bytes_.empty(); --strokes)
            Strike();
        return bytes_;
    }

private:
    std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }

    std::size_t Place()
    {
        if (Below(2) == 0)
            return Below(bytes_.size());
        const std::size_t page = Below(bytes_.size() / kPageSize);
        return std::min(page * kPageSize + Below(kPageHead), bytes_.size() - 1);
    }

    void Strike()
    {
        const std::size_t begin = Place();
        const std::size_t few = std::min(1 + Below(4), bytes_.size() - begin);
        switch (Below(6)) {
            case 0:
                bytes_[begin] = static_cast<char>(bytes_[begin] ^ (1 << Below(8)));
                break;
            case 1:
                std::generate_n(&bytes_[begin], few, [this] { return static_cast<char>(random_()); });
                break;
            case 2:
                bytes_.replace(begin, few, few, '\xFF');
                break;
            case 3:
                std::fill_n(&bytes_[begin], std::min(1 + Below(300), bytes_.size() - begin), '\0');
                break;
            case 4:
                CopyPage();
                break;
            default:
                if (Below(8) == 0)
                    bytes_.resize(begin);
        }
    }

    void CopyPage()
    {
        const std::size_t pages = bytes_.size() / kPageSize;
        const Bytes page = bytes_.substr(Below(pages) * kPageSize, kPageSize);
        bytes_.replace(Below(pages) * kPageSize, page.size(), page);
    }

    Bytes bytes_;
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
    for (const auto& [name, format] :
         {std::pair{"made, Jet 3", tools::Format::kJet3}, {"made, Jet 4", tools::Format::kJet4}})
        for (const bool index : {true, false})
            databases[name + std::string(index ? ", index" : "")] =
                DatabaseBytes(receipts, {.format = format, .password = "4073", .index = index});
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

TEST(Damage, GivesDataOrAFailureAndNothingElse)
{
    for (const auto& [name, sound] : BaseDatabases()) {
        const std::uint32_t copies = name.starts_with("made") ? kCopiesOfMade : kCopiesOfOthers;
        for (std::uint32_t seed = 0; seed < copies; ++seed) {
            SCOPED_TRACE(name + ", seed " + std::to_string(seed));
            for (const Failure& failure : ReadEverything(Vandal(sound, seed).Damaged(), "4073"))
                EXPECT_TRUE(kFailuresOfDamage.contains(failure.Number())) << failure.Number();
        }
    }
}

}  // namespace
}  // namespace platform::jet
