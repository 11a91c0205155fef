#include "platform/jet/engine.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <bit>
#include <filesystem>

#include "jet/made_database.h"
#include "make_database/bytes.h"
#include "platform/failure.h"
#include "platform/jet/header.h"
#include "platform/jet/layout.h"
#include "platform/jet/shared_engine.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace platform::jet {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using tools::DatabaseBytes;
using tools::Receipt;

/// What every reader gets of a file, whether it shares it with others or not.
template <class EngineKind>
class EngineTest : public testing::Test {
protected:
    /// Writes a file that was last changed some hours ago: what changed a moment ago is not shared.
    std::string Write(const std::string& name, const std::string& bytes, int hours = 2)
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

    int FailsToOpen(const std::string& path, const std::string& connect = "")
    {
        return FailureOf([&] { return Open(path, connect); });
    }

    TemporaryFolder folder_;
    EngineKind engine_;
};

using Engines = testing::Types<Engine, SharedEngine>;
TYPED_TEST_SUITE(EngineTest, Engines);

TYPED_TEST(EngineTest, RefusesWhatIsNoDatabase)
{
    const auto path = [&](const std::string& name) { return this->folder_.Path(name); };
    this->Write("file", {});
    mkfifo(path("pipe").c_str(), 0600);
    auto newer = DatabaseBytes(Receipts(1));
    newer[0x14] = 2;
    const std::vector<std::pair<std::string, int>> cases = {
        {path("missing.mdb"), failure::kDatabaseNotFound},
        {path("no/folder.mdb"), failure::kDatabaseNotFound},
        {path("file/inside.mdb"), failure::kInvalidDatabasePath},
        {"", failure::kInvalidDatabasePath},
        {path(""), failure::kDatabaseCannotBeOpened},
        {path("pipe"), failure::kDatabaseCannotBeOpened},
        {path("file"), failure::kUnrecognisedFormat},
        {this->Write("newer.mdb", newer), failure::kUnrecognisedFormat},
        {this->Write("text.mdb", std::string(10'000, 'x')), failure::kUnrecognisedFormat},
        {this->Write("head.mdb", newer.substr(0, 20)), failure::kUnrecognisedFormat},
    };
    for (const auto& [name, number] : cases)
        EXPECT_EQ(this->FailsToOpen(name), number) << name;
}

TYPED_TEST(EngineTest, AsksEachReaderForThePasswordInItsConnectString)
{
    const std::string path = this->Write("shop.sdd", DatabaseBytes(Receipts(3), {.password = "4073"}));
    const auto reader = this->Open(path, "PWD=4073");
    for (const char* connect : {"MS Access;PWD=4073", "pwd=4073", ";PWD=4073;", "; Pwd=4073;X=1"})
        EXPECT_EQ(this->FailsToOpen(path, connect), 0) << connect;
    for (const char* connect :
         {"", "MS Access", "4073", "PWD=", "PWD=4074", "PWD=40733", "PWD=407", "XPWD=4073"})
        EXPECT_EQ(this->FailsToOpen(path, connect), failure::kInvalidPassword) << connect;
}

TYPED_TEST(EngineTest, ReadsOnWhenTheFileIsRemovedOrReplaced)
{
    const std::string path = this->Write("shop.mdb", DatabaseBytes(Receipts(5'000)));
    const auto records = this->Open(path);
    fs::remove(path);
    EXPECT_EQ(this->FailsToOpen(path), failure::kDatabaseNotFound);
    this->Write("shop.mdb", DatabaseBytes({}));
    std::int32_t expected = 0;
    for (; !records->AtEOF(); records->MoveNext())
        ASSERT_EQ(records->Field("ref"), Value(++expected));
    EXPECT_EQ(expected, 5'000);
    EXPECT_TRUE(this->Open(path)->AtEOF()) << "a fresh set shows the new file";
}

TYPED_TEST(EngineTest, ShowsInAFreshSetWhatOthersWroteIntoTheFile)
{
    const std::string path = this->Write("shop.mdb", DatabaseBytes(Receipts(50)), 4);
    const auto database = this->engine_.OpenDatabase(path, "");
    const auto earlier = database->OpenRecordset(kQuery);
    this->Write("shop.mdb", DatabaseBytes(Receipts(50, "tpiecer")), 3);  // of the same size
    EXPECT_EQ(this->Open(path)->Field("rawtransaction"), Value("tpiecer 1"));
    EXPECT_EQ(database->OpenRecordset(kQuery)->Field("rawtransaction"), Value("tpiecer 1"));
    this->Write("shop.mdb", DatabaseBytes(Receipts(70)), 2);
    EXPECT_EQ(database->OpenRecordset(kQuery)->RecordCount(), 70);
    EXPECT_EQ(earlier->RecordCount(), 50);
}

TYPED_TEST(EngineTest, ReportsAFileThatIsCutOrOverwrittenWhileOpen)
{
    for (const std::size_t sizeLeft : {20'000U, 0U, 2'000'000U}) {
        const std::string path = this->Write("shop.mdb", DatabaseBytes(Receipts(5'000)));
        const auto records = this->Open(path);
        if (sizeLeft > fs::file_size(path))
            this->Write("shop.mdb", std::string(sizeLeft, '\xFF'));
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

TEST(Database, NamesWhatAQueryLooksForInVain)
{
    const auto database = OpenDatabaseFile(Memory(DatabaseBytes(Receipts(1))), "memory", "");
    const std::pair<const char*, int> cases[] = {
        {"select *\n FROM  TRANS Order By REF", 0},
        {"SELECT * FROM tranz ORDER BY ref", failure::kTableNotFound},
        {"SELECT * FROM trans ORDER BY reff", failure::kNoSuchQueryColumn},
        {"", failure::kInvalidCall},
        {"SELECT * FROM trans", failure::kInvalidCall},
        {"SELECT ref FROM trans ORDER BY ref", failure::kInvalidCall},
        {"SELECT * FROM trans ORDER BY ref DESC", failure::kInvalidCall},
        {"SELECT * FROM [trans] ORDER BY ref", failure::kInvalidCall},
        {"DELETE * FROM trans ORDER BY ref", failure::kInvalidCall},
    };
    for (const auto& [query, number] : cases)
        EXPECT_EQ(FailureOf([&, text = query] { return database->OpenRecordset(text); }), number) << query;
}

TEST(Database, NamesTheTableAndThePageOfDamage)
{
    constexpr const Layout& kLayout = kJet4Layout;
    constexpr std::size_t kTrans = 3 * kLayout.pageSize;
    constexpr std::size_t kUsageMaps = 4 * kLayout.pageSize;
    constexpr std::size_t kEndOfRows = 6 * kLayout.pageSize;
    constexpr std::uint32_t kTextOfTwoBytes = 22 << 16 | 24;  // where it begins and ends in its row
    const std::string indexed = DatabaseBytes(Receipts(1));
    const std::string unindexed = DatabaseBytes(Receipts(1), {.password = "", .index = false});
    const std::size_t leaf = indexed.find("\4\1"s) / kLayout.pageSize;
    const struct {
        std::string bytes;
        std::size_t place;
        std::uint32_t number;
        std::string where;
        std::string order = "ref";
    } cases[] = {
        {unindexed.substr(0, 40), 36, 0, "page 0: "},
        {unindexed, 2 * kLayout.pageSize + kLayout.definition.columnCount, 0x7FFF,
         "table MSysObjects, page 2: "},
        {unindexed, kTrans + kLayout.definition.columnCount, 0x7FFF, "table trans, page 3: "},
        {unindexed, kTrans + kLayout.definition.usageMap, 0xFFFFFF01, "table trans, page 16777215: "},
        {unindexed, kUsageMaps + kLayout.data.rowOffsets, 0x0FFF0FFE, "table trans, page 4: "},
        {indexed, kEndOfRows - 4, 0xFFFFFFFF, "table trans, page 5: "},
        {indexed, kEndOfRows - 7, kTextOfTwoBytes, "table trans, page 5: ", "rawtransaction"},
        {indexed, leaf * kLayout.pageSize + kLayout.indexPage.prefixLength, 0xFFFF,
         "table trans, page " + std::to_string(leaf) + ": "},
    };
    for (auto [bytes, place, number, where, order] : cases) {
        tools::Store(bytes, place, number);
        const Failure failure =
            ThrownBy([&, damaged = bytes, query = "SELECT * FROM trans ORDER BY " + order] {
                return OpenDatabaseFile(Memory(damaged), "memory", "")
                    ->OpenRecordset(query)
                    ->Field("rawtransaction");
            });
        EXPECT_EQ(failure.Number(), failure::kDatabaseDamaged);
        EXPECT_NE(failure.Description().find("The database memory is damaged: " + where), std::string::npos)
            << failure.Description();
    }
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
    std::string bytes = DatabaseBytes(Receipts(1));
    const std::string folderOfTables = "\x01\0\0\x0F"s;  // in the catalogue's rows the type stands behind it
    bytes.at(bytes.find(folderOfTables) + folderOfTables.size()) = 6;
    const Failure failure = ThrownBy([&] { return OpenInMemory(bytes); });
    EXPECT_EQ(failure.Number(), failure::kTableNotFound);
    EXPECT_NE(failure.Description().find("linked"), std::string::npos) << failure.Description();
}

INSTANTIATE_TEST_SUITE_P(Formats, FormatTest, kBothFormats, FormatName);

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
        receipts.push_back({ref++, digits.substr(0, length), 38047.5, -1.25});
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
    std::vector<Receipt> receipts;
    for (std::int32_t ref = 0; ref < 30; ++ref) {
        // 0 to 9 differ behind what counts, 10 to 19 in the last that does, 20 to 29 at once.
        std::string memo(100'000, 'm');
        const std::size_t place = ref < 10 ? kCharactersThatCount : ref < 20 ? kCharactersThatCount - 1 : 0;
        memo[place] = static_cast<char>('z' - ref % 10);
        receipts.push_back({ref, memo, {}, {}});
    }
    receipts.push_back({30, "co-op", {}, {}});
    receipts.push_back({31, "coop", {}, {}});
    std::string bytes = DatabaseBytes(receipts, options_);
    const auto open = [&] {
        return OpenDatabaseFile(Memory(bytes, bytes.size() / kJet3Layout.pageSize / 4), "memory", "")
            ->OpenRecordset("SELECT * FROM trans ORDER BY rawtransaction");
    };
    const auto records = open();
    std::string order;
    for (; !records->AtEOF(); records->MoveNext())
        order += std::to_string(std::get<std::int32_t>(records->Field("ref"))) + " ";
    const std::string first = GetParam() == tools::Format::kJet3 ? "30 31 " : "31 30 ";
    EXPECT_EQ(order,
              first + "0 1 2 3 4 5 6 7 8 9 19 18 17 16 15 14 13 12 11 10 29 28 27 26 25 24 23 22 21 20 ");

    const Layout& layout = FileLayout();
    const std::size_t columns = layout.definition.end + layout.definition.indexPlaceSize;
    bytes[3 * layout.pageSize + columns + layout.column.size] = static_cast<char>(ColumnType::kOle);
    EXPECT_EQ(open()->RecordCount(), 32);
}

}  // namespace
}  // namespace platform::jet
