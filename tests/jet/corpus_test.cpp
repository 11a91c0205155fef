#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/failure.h"
#include "platform/failure_numbers.h"
#include "platform/jet/catalogue.h"
#include "platform/jet/engine.h"
#include "platform/jet/file_source.h"
#include "platform/jet/index_order.h"
#include "platform/jet/sorted_order.h"

namespace platform::jet {
namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

constexpr const char* kQuery = "SELECT * FROM trans ORDER BY ref";
constexpr const char* kSddConnect = "MS Access;PWD=4073";
constexpr std::array kColumns = {"ref", "rawtransaction", "timestamp", "datetimestamp"};

/// Why a file differs from what is expected of it.
class Difference : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

Json ReadJson(const fs::path& path)
{
    std::ifstream stream(path);
    return Json::parse(stream);
}

std::string IsoText(DateTime moment)
{
    using namespace std::chrono;
    const auto day = floor<days>(moment);
    const year_month_day date{day};
    const hh_mm_ss time{moment - day};
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    std::string iso = text.data();
    if (const auto milliseconds = time.subseconds().count(); milliseconds != 0) {
        std::snprintf(text.data(), text.size(), ".%03d", static_cast<int>(milliseconds));
        iso += text.data();
    }
    return iso;
}

std::string HexText(const Binary& binary)
{
    std::string text = "hex:";
    for (const unsigned byte : binary.bytes) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x", byte);
        text += digits.data();
    }
    return text;
}

/// An exact number without trailing zeros, as values have it.
std::string Trimmed(std::string digits)
{
    if (digits.find('.') == std::string::npos)
        return digits;
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.')
        digits.pop_back();
    return digits;
}

/// A value in the form that the expectations have.
struct AsJson {
    Json operator()(Null) const { return nullptr; }
    Json operator()(const ExactNumber& number) const { return number.digits; }
    Json operator()(DateTime moment) const { return IsoText(moment); }
    Json operator()(const Guid& guid) const { return guid.text; }
    Json operator()(const Binary& binary) const { return HexText(binary); }
    Json operator()(const auto& plain) const { return plain; }
};

bool Matches(const Value& value, const Json& expected)
{
    if (std::holds_alternative<ExactNumber>(value) && expected.is_string())
        return std::get<ExactNumber>(value).digits == Trimmed(expected.get<std::string>());
    return std::visit(AsJson{}, value) == expected;
}

void CompareField(const RecordSet& records, const std::string& column, const Json& row)
{
    if (!row.contains(column)) {
        try {
            (void)records.Field(column);
        } catch (const Failure& failure) {
            if (failure.Number() == failure::kNoSuchColumn)
                return;
        }
        throw Difference("column " + column + " should be missing");
    }
    const Value value = records.Field(column);
    if (!Matches(value, row[column])) {
        const auto replace = Json::error_handler_t::replace;
        throw Difference("row " + row.value("ref", Json()).dump() + ", " + column + ": " +
                         std::visit(AsJson{}, value).dump(-1, ' ', false, replace).substr(0, 200) +
                         " instead of " + row[column].dump().substr(0, 200));
    }
}

void CompareRows(RecordSet& records, const Json& rows)
{
    if (records.RecordCount() != static_cast<std::int64_t>(rows.size()))
        throw Difference(std::to_string(records.RecordCount()) + " rows instead of " +
                         std::to_string(rows.size()));
    for (const Json& row : rows) {
        for (const char* column : kColumns)
            CompareField(records, column, row);
        records.MoveNext();
    }
    if (!records.AtEOF())
        throw Difference("the last row is not the end");
}

int ExpectedError(const Json& sidecar)
{
    const auto error = sidecar["error"].get<std::string>();
    const auto mentions = [&](const char* words) { return error.find(words) != std::string::npos; };
    if (mentions("password"))
        return failure::kInvalidPassword;
    if (mentions("no table"))
        return failure::kTableNotFound;
    if (mentions("no column"))
        return failure::kNoSuchQueryColumn;
    return failure::kUnrecognisedFormat;
}

std::string ConnectFor(const fs::path& database)
{
    return database.extension() == ".sdd" ? kSddConnect : "";
}

/// An index and a sort must come to the same order.
void CompareOrders(const fs::path& database)
{
    const PageFile file(std::make_unique<FileSource>(database.string()), database.string());
    const TableDefinition table = FindTable(file, "trans");
    const Column& column = *table.Find("ref");
    const auto byIndex = PositionsByIndex(file, table, column);
    if (byIndex && *byIndex != PositionsBySorting(file, table, column))
        throw Difference("the index and the sort differ in order");
}

void CompareFile(const fs::path& database, const Json& sidecar)
{
    Engine engine;
    const auto open = [&](const std::string& connect) {
        return engine.OpenDatabase(database.string(), connect)->OpenRecordset(kQuery);
    };
    if (sidecar["expect"] == "error") {
        try {
            (void)open(ConnectFor(database));
        } catch (const Failure& failure) {
            if (failure.Number() != ExpectedError(sidecar))
                throw Difference(std::to_string(failure.Number()) + " " + failure.Description());
            const bool rightPasswordOpens = sidecar["password"].is_string();
            if (rightPasswordOpens)
                CompareRows(*open("MS Access;PWD=" + sidecar["password"].get<std::string>()),
                            sidecar["rows"]);
            return;
        }
        throw Difference("opens, but should not: " + sidecar["error"].get<std::string>());
    }
    const fs::path folder = database.parent_path();
    const Json rows = sidecar.contains("rowsFrom")
                          ? ReadJson(folder / sidecar["rowsFrom"].get<std::string>())["rows"]
                          : sidecar["rows"];
    CompareRows(*open(ConnectFor(database)), rows);
    CompareOrders(database);
}

/// Empty where the file is as expected.
std::string DifferenceIn(const fs::path& database, const Json& sidecar)
{
    try {
        CompareFile(database, sidecar);
        return {};
    } catch (const std::exception& difference) {
        return difference.what();
    }
}

TEST(Corpus, EveryDatabaseIsReadAsExpected)
{
    const char* const corpus = std::getenv("TRELLIVAN_CORPUS");
    if (corpus == nullptr)
        GTEST_SKIP() << "TRELLIVAN_CORPUS names no folder";
    int files = 0;
    for (const auto& entry : fs::directory_iterator(corpus)) {
        if (entry.path().extension() != ".json")
            continue;
        ++files;
        const fs::path database = fs::path(entry.path()).replace_extension();
        const std::string difference = DifferenceIn(database, ReadJson(entry.path()));
        if (!difference.empty())
            ADD_FAILURE() << database.filename().string() << ": " << difference;
    }
    EXPECT_GT(files, 0) << "no databases in " << corpus;
    std::cout << files << " databases compared\n";
}

}  // namespace
}  // namespace platform::jet
