#include "platform/jet/engine.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <bit>
#include <filesystem>

#include "jet/memory_source.h"
#include "make_database/bytes.h"
#include "make_database/database_writer.h"
#include "platform/failure.h"
#include "platform/jet/database_file.h"
#include "platform/jet/header.h"
#include "platform/jet/layout.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace platform::jet {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using tools::DatabaseBytes;
using tools::DatabaseOptions;
using tools::Receipt;

constexpr const char* kQuery = "SELECT * FROM trans ORDER BY ref";
constexpr double kNoon = 38047.5;

std::unique_ptr<ByteSource> Memory(const std::string& bytes)
{
    return std::make_unique<MemorySource>(bytes, ~std::uint64_t{0});
}

std::unique_ptr<RecordSet> OpenInMemory(const std::string& bytes, const std::string& password = "")
{
    return OpenDatabaseFile(Memory(bytes), "memory", password)->OpenRecordset(kQuery);
}

std::vector<Receipt> Receipts(std::int32_t count)
{
    std::vector<Receipt> receipts;
    for (std::int32_t ref = 1; ref <= count; ++ref)
        receipts.push_back({ref, "receipt " + std::to_string(ref), kNoon, std::nullopt});
    return receipts;
}

/// A database file in a folder that goes with the test.
class EngineTest : public testing::Test {
protected:
    std::string Write(const std::string& name, const std::string& bytes)
    {
        WriteFile(Path(name), bytes);
        return Path(name);
    }

    [[nodiscard]] std::string Path(const std::string& name) const { return folder_.Path(name); }

    std::unique_ptr<RecordSet> Open(const std::string& path, const std::string& connect = "")
    {
        return engine_.OpenDatabase(path, connect)->OpenRecordset(kQuery);
    }

private:
    TemporaryFolder folder_;
    Engine engine_;
};

TEST_F(EngineTest, RefusesWhatIsNoDatabase)
{
    Write("file", {});
    mkfifo(Path("pipe").c_str(), 0600);
    auto newer = DatabaseBytes(Receipts(1));
    newer[0x14] = 2;
    const std::vector<std::pair<std::string, int>> cases = {
        {Path("missing.mdb"), failure::kDatabaseNotFound},
        {Path("no/folder.mdb"), failure::kDatabaseNotFound},
        {Path("file/inside.mdb"), failure::kInvalidDatabasePath},
        {"", failure::kInvalidDatabasePath},
        {Path(""), failure::kDatabaseCannotBeOpened},
        {Path("pipe"), failure::kDatabaseCannotBeOpened},
        {Path("file"), failure::kUnrecognisedFormat},
        {Write("newer.mdb", newer), failure::kUnrecognisedFormat},
        {Write("text.mdb", std::string(10'000, 'x')), failure::kUnrecognisedFormat},
        {Write("head.mdb", newer.substr(0, 20)), failure::kUnrecognisedFormat},
    };
    for (const auto& [path, number] : cases)
        EXPECT_EQ(FailureOf([&path = path, this] { return Open(path); }), number) << path;
}

TEST_F(EngineTest, TakesThePasswordOutOfTheConnectString)
{
    const std::string path = Write("shop.sdd", DatabaseBytes(Receipts(3), {.password = "4073"}));
    for (const char* connect : {"MS Access;PWD=4073", "pwd=4073", ";PWD=4073;", "; Pwd=4073;X=1"})
        EXPECT_EQ(FailureOf([&] { return Open(path, connect); }), 0) << connect;
    for (const char* connect :
         {"", "MS Access", "4073", "PWD=", "PWD=4074", "PWD=40733", "PWD=407", "XPWD=4073"})
        EXPECT_EQ(FailureOf([&] { return Open(path, connect); }), failure::kInvalidPassword) << connect;
}

TEST_F(EngineTest, ReadsOnWhenTheFileIsRemovedOrReplaced)
{
    const std::string path = Write("shop.mdb", DatabaseBytes(Receipts(5'000)));
    const auto records = Open(path);
    fs::remove(path);
    Write("shop.mdb", DatabaseBytes({}));
    std::int32_t expected = 0;
    for (; !records->AtEOF(); records->MoveNext())
        ASSERT_EQ(records->Field("ref"), Value(++expected));
    EXPECT_EQ(expected, 5'000);
    EXPECT_TRUE(Open(path)->AtEOF()) << "a fresh set shows the new file";
}

TEST_F(EngineTest, ShowsInAFreshSetWhatOthersWroteIntoTheFile)
{
    const std::string path = Write("shop.mdb", DatabaseBytes(Receipts(50)));
    Engine engine;
    const auto database = engine.OpenDatabase(path, "");
    EXPECT_EQ(database->OpenRecordset(kQuery)->RecordCount(), 50);
    Write("shop.mdb", DatabaseBytes(Receipts(70)));
    EXPECT_EQ(database->OpenRecordset(kQuery)->RecordCount(), 70);
}

TEST_F(EngineTest, ReportsAFileThatIsCutOrOverwrittenWhileOpen)
{
    for (const std::size_t sizeLeft : {20'000U, 0U, 2'000'000U}) {
        const std::string path = Write("shop.mdb", DatabaseBytes(Receipts(5'000)));
        const auto records = Open(path);
        if (sizeLeft > fs::file_size(path))
            Write("shop.mdb", std::string(sizeLeft, '\xFF'));
        else
            fs::resize_file(path, sizeLeft);
        int failures = 0;
        for (; !records->AtEOF(); records->MoveNext()) {
            const int number = FailureOf([&] { return records->Field("rawtransaction"); });
            EXPECT_TRUE(number == 0 || number == failure::kDatabaseDamaged) << number;
            failures += number == 0 ? 0 : 1;
        }
        EXPECT_GT(failures, 2'500) << sizeLeft;
    }
}

TEST(RecordSet, KeepsTheRulesAtItsEdges)
{
    const auto records = OpenInMemory(DatabaseBytes(Receipts(2)));
    EXPECT_EQ(records->RecordCount(), 2);
    EXPECT_EQ(records->Field("REF"), Value(1));
    EXPECT_EQ(records->Field("datetimestamp"), Value(Null{}));
    EXPECT_EQ(FailureOf([&] { return records->Field("other"); }), failure::kNoSuchColumn);
    records->MoveNext();
    EXPECT_EQ(records->Field("RawTransaction"), Value(std::string("receipt 2")));
    EXPECT_FALSE(records->AtEOF());
    records->MoveNext();
    EXPECT_TRUE(records->AtEOF());
    EXPECT_EQ(FailureOf([&] { return records->Field("ref"); }), failure::kNoCurrentRecord);
    EXPECT_EQ(FailureOf([&] { return records->Field("other"); }), failure::kNoSuchColumn);
    EXPECT_EQ(FailureOf([&] { records->MoveNext(); }), failure::kNoCurrentRecord);
    records->MoveFirst();
    EXPECT_EQ(records->Field("ref"), Value(1));

    const auto empty = OpenInMemory(DatabaseBytes({}));
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_TRUE(empty->AtEOF());
    EXPECT_EQ(FailureOf([&] { empty->MoveFirst(); }), failure::kNoCurrentRecord);
}

TEST(Database, NamesWhatAQueryLooksForInVain)
{
    const auto database = OpenDatabaseFile(Memory(DatabaseBytes(Receipts(1))), "memory", "");
    const auto run = [&](const char* query) {
        return FailureOf([&] { return database->OpenRecordset(query); });
    };
    EXPECT_EQ(run("SELECT * FROM tranz ORDER BY ref"), failure::kTableNotFound);
    EXPECT_EQ(run("SELECT * FROM trans ORDER BY reff"), failure::kNoSuchQueryColumn);
    EXPECT_EQ(run("SELECT * FROM TRANS ORDER BY Ref"), 0);
}

/// The description of the failure that opening the database or reading its first receipt ends in.
std::string DamageIn(const std::string& bytes)
{
    const Failure failure = ThrownBy([&] { return OpenInMemory(bytes)->Field("rawtransaction"); });
    EXPECT_EQ(failure.Number(), failure::kDatabaseDamaged);
    return failure.Description();
}

TEST(Database, NamesTheTableAndThePageOfDamage)
{
    constexpr std::size_t kPageSize = kJet4Layout.pageSize;
    constexpr std::size_t kTrans = 3 * kPageSize;
    constexpr std::size_t kUsageMaps = 4 * kPageSize;
    constexpr std::size_t kRows = 5 * kPageSize;
    constexpr std::uint32_t kNowhere = 0xFFFFFF01;
    const std::string indexed = DatabaseBytes(Receipts(1));
    const std::string unindexed = DatabaseBytes(Receipts(1), {.password = "", .index = false});
    const std::size_t leaf = indexed.find("\4\1"s) / kPageSize;
    const struct {
        const std::string& sound;
        std::size_t place;
        std::uint32_t number;
        std::string description;
    } cases[] = {
        {unindexed, 2 * kPageSize + kJet4Layout.definition.columnCount, 0x7FFF,
         "table MSysObjects, page 2: "},
        {unindexed, kTrans + kJet4Layout.definition.columnCount, 0x7FFF, "table trans, page 3: "},
        {unindexed, kTrans + kJet4Layout.definition.usageMap, kNowhere, "table trans, page 16777215: "},
        {unindexed, kUsageMaps + kJet4Layout.data.rowOffsets, 0x0FFF0FFE, "table trans, page 4: "},
        {unindexed, kRows + kPageSize - 4, 0xFFFFFFFF, "table trans, page 5: "},
        {indexed, kRows + kPageSize - 4, 0xFFFFFFFF, "table trans, page 5: "},
        {indexed, leaf * kPageSize + kJet4Layout.indexPage.prefixLength, 0xFFFF,
         "table trans, page " + std::to_string(leaf) + ": "},
    };
    for (const auto& c : cases) {
        std::string bytes = c.sound;
        tools::Store(bytes, c.place, c.number);
        EXPECT_NE(DamageIn(bytes).find("The database memory is damaged: " + c.description), std::string::npos)
            << DamageIn(bytes);
    }
}

TEST(Rc4, GivesThePublishedStream)
{
    const std::array<std::uint8_t, 3> key = {'K', 'e', 'y'};
    std::array<std::uint8_t, 9> bytes = {'P', 'l', 'a', 'i', 'n', 't', 'e', 'x', 't'};
    ApplyRc4(key, bytes);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 9>{0xBB, 0xF3, 0x16, 0xE8, 0xD9, 0x40, 0xAF, 0x0A, 0xD3}));
}

/// The same database with the pages encoded: the page key stands in the masked header.
std::string Encoded(std::string bytes)
{
    constexpr std::size_t kPageKey = 0x3E;
    constexpr std::uint32_t kKey = 0x1234ABCD;
    constexpr std::size_t kPageSize = kJet4Layout.pageSize;
    const auto littleEndian = [](std::uint32_t number) {
        return std::bit_cast<std::array<std::uint8_t, 4>>(number);
    };
    for (std::size_t i = 0; i < 4; ++i)
        bytes[kPageKey + i] = static_cast<char>(bytes[kPageKey + i] ^ littleEndian(kKey)[i]);
    for (std::uint32_t page = 1; page < bytes.size() / kPageSize; ++page)
        ApplyRc4(littleEndian(kKey ^ page),
                 {reinterpret_cast<std::uint8_t*>(bytes.data()) + page * kPageSize, kPageSize});
    return bytes;
}

TEST(Database, ReadsEncodedPages)
{
    const auto records = OpenInMemory(Encoded(DatabaseBytes(Receipts(500))));
    std::int32_t expected = 0;
    for (; !records->AtEOF(); records->MoveNext())
        ASSERT_EQ(records->Field("rawtransaction"), Value("receipt " + std::to_string(++expected)));
    EXPECT_EQ(expected, 500);
}

TEST(Database, SaysThatATableIsOnlyLinked)
{
    constexpr char kLinkedTable = 6;
    std::string bytes = DatabaseBytes(Receipts(1));
    const std::string folderOfTables = "\x01\0\0\x0F"s;  // in the catalogue's rows the type stands behind it
    bytes.at(bytes.find(folderOfTables) + folderOfTables.size()) = kLinkedTable;
    const Failure failure = ThrownBy([&] { return OpenInMemory(bytes); });
    EXPECT_EQ(failure.Number(), failure::kTableNotFound);
    EXPECT_NE(failure.Description().find("linked"), std::string::npos) << failure.Description();
}

class FormatTest : public testing::TestWithParam<tools::Format> {
protected:
    FormatTest() { options_.format = GetParam(); }
    DatabaseOptions options_;
};

INSTANTIATE_TEST_SUITE_P(Formats, FormatTest, testing::Values(tools::Format::kJet3, tools::Format::kJet4),
                         [](const auto& test) {
                             return test.param == tools::Format::kJet3 ? "Jet3" : "Jet4";
                         });

TEST_P(FormatTest, ChecksPasswordsOfEveryLengthAndCreationDate)
{
    std::vector<std::string> passwords = {"é€ü"};
    for (std::size_t length = 0; length <= 20; ++length)
        passwords.push_back(std::string("Ab1 x;Zz_-=.,!?#%&+9").substr(0, length));
    for (const double created : {36526.5, 0.0, -5.75, 73050.999, -36000.25}) {
        options_.created = created;
        for (const std::string& password : passwords) {
            options_.password = password;
            const auto bytes = DatabaseBytes(Receipts(1), options_);
            const auto open = [&](const std::string& given) {
                return FailureOf([&] { return OpenInMemory(bytes, given); });
            };
            const int refusal = password.empty() ? 0 : failure::kInvalidPassword;
            EXPECT_EQ(open(password), 0) << password << ", " << created;
            EXPECT_EQ(open(password + "x"), refusal) << password;
            EXPECT_EQ(open(""), refusal) << password;
        }
    }
}

TEST_P(FormatTest, ReadsReceiptsOfEveryLengthAsTheyWereWritten)
{
    std::string digits;
    while (digits.size() < 200'000)
        digits += digits.size() % 5 == 0 ? "\r\n" : std::to_string(digits.size());
    std::vector<std::size_t> lengths = {0, 1, 31, 32, 33, 63, 64, 65, 4'000, 8'200, 60'000, 200'000};
    for (std::size_t length = 1'000; length < 4'100; length += 37)
        lengths.push_back(length);
    std::vector<Receipt> receipts;
    for (std::int32_t ref = 0; const std::size_t length : lengths) {
        receipts.push_back({ref++, digits.substr(0, length), kNoon, -1.25});
        receipts.push_back({ref++, std::nullopt, std::nullopt, 0.5});
    }
    for (const bool compress : {true, false}) {
        options_.compress = compress;
        const auto records = OpenInMemory(DatabaseBytes(receipts, options_));
        ASSERT_EQ(records->RecordCount(), static_cast<std::int64_t>(receipts.size()));
        for (const Receipt& receipt : receipts) {
            ASSERT_EQ(records->Field("rawtransaction"),
                      receipt.rawtransaction ? Value(*receipt.rawtransaction) : Value(Null{}))
                << *receipt.ref;
            ASSERT_EQ(records->Field("datetimestamp"), Value(FromDayNumber(*receipt.datetimestamp)));
            records->MoveNext();
        }
    }
}

TEST_P(FormatTest, SortsWithoutAnIndexNullsFirstAndEqualKeysAsStored)
{
    options_.index = false;
    const Receipt receipts[] = {{5, "e", {}, {}}, {{}, "a", {}, {}},         {-7, "c", {}, {}},
                                {5, "f", {}, {}}, {2147483647, "h", {}, {}}, {{}, "b", {}, {}},
                                {0, "d", {}, {}}, {5, "g", {}, {}}};
    const auto records = OpenInMemory(DatabaseBytes(receipts, options_));
    std::string order;
    for (; !records->AtEOF(); records->MoveNext())
        order += std::get<std::string>(records->Field("rawtransaction"));
    EXPECT_EQ(order, "abcdefgh");
}

TEST_P(FormatTest, SortsByMemosAndReadsTheirBeginningsAlone)
{
    constexpr std::size_t kCharactersThatCount = 255;
    constexpr std::int32_t kMemos = 30;
    constexpr std::size_t kLength = 100'000;
    std::vector<Receipt> receipts;
    for (std::int32_t ref = 0; ref < kMemos; ++ref) {
        // 0 to 9 differ behind what counts, 10 to 19 in the last that does, 20 to 29 at once.
        std::string memo(kLength, 'm');
        const std::size_t place = ref < 10 ? kCharactersThatCount : ref < 20 ? kCharactersThatCount - 1 : 0;
        memo[place] = static_cast<char>('z' - ref % 10);
        receipts.push_back({ref, memo, {}, {}});
    }
    const std::string bytes = DatabaseBytes(receipts, options_);
    const auto records =
        OpenDatabaseFile(std::make_unique<MemorySource>(bytes, bytes.size() / kJet3Layout.pageSize / 4),
                         "memory", "")
            ->OpenRecordset("SELECT * FROM trans ORDER BY rawtransaction");
    std::string order;
    for (; !records->AtEOF(); records->MoveNext())
        order += std::to_string(std::get<std::int32_t>(records->Field("ref"))) + " ";
    EXPECT_EQ(order,
              "0 1 2 3 4 5 6 7 8 9 "
              "19 18 17 16 15 14 13 12 11 10 29 28 27 26 25 24 23 22 21 20 ");
}

}  // namespace
}  // namespace platform::jet
