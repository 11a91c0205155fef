#include "platform/jet/engine.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <bit>
#include <filesystem>
#include <map>

#include "jet/memory_source.h"
#include "make_database/database_writer.h"
#include "platform/failure_numbers.h"
#include "platform/jet/catalogue.h"
#include "platform/jet/column_value.h"
#include "platform/jet/database_file.h"
#include "platform/jet/rc4.h"
#include "platform/jet/table_scan.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace platform::jet {
namespace {

namespace fs = std::filesystem;
using tools::DatabaseBytes;
using tools::DatabaseOptions;
using tools::Receipt;

constexpr const char* kQuery = "SELECT * FROM trans ORDER BY ref";
constexpr double kNoon = 38047.5;
constexpr std::uint64_t kAnyReads = ~std::uint64_t{0};

std::unique_ptr<RecordSet> OpenInMemory(const std::string& bytes, const std::string& password)
{
    return OpenDatabaseFile(std::make_unique<MemorySource>(bytes, kAnyReads), "memory", password)
        ->OpenRecordset(kQuery);
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
    for (const auto& expected : cases)
        EXPECT_EQ(FailureOf([&] { (void)Open(expected.first); }), expected.second) << expected.first;
}

TEST_F(EngineTest, TakesThePasswordOutOfTheConnectString)
{
    DatabaseOptions options;
    options.password = "4073";
    const std::string path = Write("shop.sdd", DatabaseBytes(Receipts(3), options));
    for (const char* connect : {"MS Access;PWD=4073", "pwd=4073", ";PWD=4073;", "; Pwd=4073;X=1"})
        EXPECT_EQ(FailureOf([&] { (void)Open(path, connect); }), 0) << connect;
    for (const char* connect :
         {"", "MS Access", "4073", "PWD=", "PWD=4074", "PWD=40733", "PWD=407", "XPWD=4073"})
        EXPECT_EQ(FailureOf([&] { (void)Open(path, connect); }), failure::kInvalidPassword) << connect;
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

TEST_F(EngineTest, ReportsAFileThatIsCutOrOverwrittenWhileOpen)
{
    const std::string path = Write("shop.mdb", DatabaseBytes(Receipts(5'000)));
    const auto change = std::map<std::string, std::function<void()>>{
        {"cut", [&] { fs::resize_file(path, 20'000); }},
        {"emptied", [&] { fs::resize_file(path, 0); }},
        {"overwritten", [&] { Write("shop.mdb", std::string(2'000'000, '\xFF')); }}};
    for (const auto& [name, makeChange] : change) {
        Write("shop.mdb", DatabaseBytes(Receipts(5'000)));
        const auto records = Open(path);
        makeChange();
        int failures = 0;
        for (; !records->AtEOF(); records->MoveNext()) {
            const int number = FailureOf([&] { (void)records->Field("rawtransaction"); });
            EXPECT_TRUE(number == 0 || number == failure::kDatabaseDamaged) << number;
            failures += number == 0 ? 0 : 1;
        }
        EXPECT_GT(failures, 2'500) << name;
    }
}

TEST(RecordSet, KeepsTheRulesAtItsEdges)
{
    const auto records = OpenInMemory(DatabaseBytes(Receipts(2)), "");
    EXPECT_EQ(records->RecordCount(), 2);
    EXPECT_EQ(records->Field("REF"), Value(1));
    EXPECT_EQ(records->Field("datetimestamp"), Value(Null{}));
    EXPECT_EQ(FailureOf([&] { (void)records->Field("other"); }), failure::kNoSuchColumn);
    records->MoveNext();
    EXPECT_EQ(records->Field("RawTransaction"), Value(std::string("receipt 2")));
    EXPECT_FALSE(records->AtEOF());
    records->MoveNext();
    EXPECT_TRUE(records->AtEOF());
    EXPECT_EQ(FailureOf([&] { (void)records->Field("ref"); }), failure::kNoCurrentRecord);
    EXPECT_EQ(FailureOf([&] { (void)records->Field("other"); }), failure::kNoSuchColumn);
    EXPECT_EQ(FailureOf([&] { records->MoveNext(); }), failure::kNoCurrentRecord);
    records->MoveFirst();
    EXPECT_EQ(records->Field("ref"), Value(1));

    const auto empty = OpenInMemory(DatabaseBytes({}), "");
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_TRUE(empty->AtEOF());
    EXPECT_EQ(FailureOf([&] { empty->MoveFirst(); }), failure::kNoCurrentRecord);
}

TEST(Database, NamesWhatAQueryLooksForInVain)
{
    const auto database =
        OpenDatabaseFile(std::make_unique<MemorySource>(DatabaseBytes(Receipts(1)), kAnyReads), "memory", "");
    const auto run = [&](const char* query) {
        return FailureOf([&] { (void)database->OpenRecordset(query); });
    };
    EXPECT_EQ(run("SELECT * FROM tranz ORDER BY ref"), failure::kTableNotFound);
    EXPECT_EQ(run("SELECT * FROM trans ORDER BY reff"), failure::kNoSuchQueryColumn);
    EXPECT_EQ(run("SELECT * FROM TRANS ORDER BY Ref"), 0);
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
    const auto records = OpenInMemory(Encoded(DatabaseBytes(Receipts(500))), "");
    std::int32_t expected = 0;
    for (; !records->AtEOF(); records->MoveNext())
        ASSERT_EQ(records->Field("rawtransaction"), Value("receipt " + std::to_string(++expected)));
    EXPECT_EQ(expected, 500);
}

/// Where a column of fixed length stands in the catalogue's row of the table trans, from the file's start.
std::size_t CataloguePlace(const std::string& bytes, const std::string& columnName)
{
    const PageFile file(std::make_unique<MemorySource>(bytes, kAnyReads), "memory");
    const TableDefinition catalogue = ReadCatalogueDefinition(file);
    std::size_t place = 0;
    ForEachRow(file, catalogue, [&](RowPosition position, const Row& row) {
        if (ReadValue(file, row, *catalogue.Find("Name")) != Value(std::string("trans")))
            return;
        const Page page = file.ReadPage(position.Page());
        const ByteView slot = DataPage(page, file.PageLayout()).SlotAt(position.Row()).bytes;
        const auto inPage = static_cast<std::size_t>(slot.Bytes().data() - page.View().Bytes().data());
        place = position.Page() * file.PageLayout().pageSize + inPage + 2 +
                catalogue.Find(columnName)->fixedOffset;
    });
    return place;
}

TEST(Database, SaysThatATableIsOnlyLinked)
{
    constexpr char kLinkedTable = 6;
    std::string bytes = DatabaseBytes(Receipts(1));
    bytes.at(CataloguePlace(bytes, "Type")) = kLinkedTable;
    const Failure failure = ThrownBy([&] { return OpenInMemory(bytes, ""); });
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
                return FailureOf([&] { (void)OpenInMemory(bytes, given); });
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
    std::vector<std::size_t> lengths = {0, 1, 31, 32, 33, 63, 64, 65, 4'000, 8'200, 60'000, 200'000};
    for (std::size_t length = 1'000; length < 4'100; length += 37)
        lengths.push_back(length);
    std::vector<Receipt> receipts;
    for (const std::size_t length : lengths) {
        std::string text;
        while (text.size() < length)
            text += text.size() % 5 == 0 ? "\r\n" : std::to_string(text.size());
        receipts.push_back(
            {static_cast<std::int32_t>(receipts.size()), text.substr(0, length), kNoon, -1.25});
        receipts.push_back({static_cast<std::int32_t>(receipts.size()), std::nullopt, std::nullopt, 0.5});
    }
    for (const bool compress : {true, false}) {
        options_.compress = compress;
        const auto records = OpenInMemory(DatabaseBytes(receipts, options_), "");
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
    const std::vector<std::pair<std::optional<std::int32_t>, std::string>> stored = {{5, "e"},
                                                                                     {std::nullopt, "a"},
                                                                                     {-7, "c"},
                                                                                     {5, "f"},
                                                                                     {2'147'483'647, "h"},
                                                                                     {std::nullopt, "b"},
                                                                                     {0, "d"},
                                                                                     {5, "g"}};
    std::vector<Receipt> receipts;
    receipts.reserve(stored.size());
    for (const auto& [ref, text] : stored)
        receipts.push_back({ref, text, kNoon, kNoon});
    const auto records = OpenInMemory(DatabaseBytes(receipts, options_), "");
    std::string order;
    for (; !records->AtEOF(); records->MoveNext())
        order += std::get<std::string>(records->Field("rawtransaction"));
    EXPECT_EQ(order, "abcdefgh");
}

}  // namespace
}  // namespace platform::jet
