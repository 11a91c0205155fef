#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "fakes/clock_and_formats.h"
#include "platform/failure.h"
#include "platform/jet/byte_source.h"
#include "platform/jet/engine.h"
#include "platform/jet/row_order.h"
#include "platform/jet/table_definition.h"
#include "support/failure_of.h"

namespace platform::jet {
namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

Json ReadJson(const fs::path& path)
{
    std::ifstream stream(path);
    return Json::parse(stream);
}

std::string IsoText(DateTime moment)
{
    const fakes::PlainFormats formats;
    const auto milliseconds = (moment - std::chrono::floor<std::chrono::seconds>(moment)).count();
    const std::string fraction = "." + std::to_string(1000 + milliseconds).substr(1);
    return formats.ShortDate(moment) + "T" + formats.LongTime(moment) + (milliseconds == 0 ? "" : fraction);
}

std::string HexText(const Binary& binary)
{
    std::ostringstream text;
    text << "hex:" << std::hex << std::setfill('0');
    for (const unsigned byte : binary.bytes)
        text << std::setw(2) << byte;
    return text.str();
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

/// What is expected of a value. Exact numbers are written there with the zeros at their end, Singles with the
/// few digits that tell them from other Singles, which is not the Double that they widen to.
Json Expected(const Json& field, const Value& value)
{
    if (std::holds_alternative<float>(value) && field.is_number())
        return field.get<float>();
    if (!std::holds_alternative<ExactNumber>(value) || !field.is_string())
        return field;
    auto digits = field.get<std::string>();
    if (digits.find('.') != std::string::npos)
        digits.erase(digits.find_last_not_of('0') + 1);
    return digits.ends_with('.') ? digits.substr(0, digits.size() - 1) : digits;
}

void ExpectRow(const RecordSet& records, const Json& row)
{
    for (const char* column : {"ref", "rawtransaction", "timestamp", "datetimestamp"}) {
        SCOPED_TRACE(column);
        if (!row.contains(column)) {
            EXPECT_EQ(FailureOf([&] { return records.Field(column); }), failure::kNoSuchColumn);
            continue;
        }
        const Value value = records.Field(column);
        EXPECT_EQ(std::visit(AsJson{}, value), Expected(row[column], value));
    }
}

void ExpectRows(RecordSet& records, const Json& rows)
{
    ASSERT_EQ(records.RecordCount(), static_cast<std::int64_t>(rows.size()));
    for (const Json& row : rows) {
        ExpectRow(records, row);
        records.MoveNext();
    }
    EXPECT_TRUE(records.AtEOF());
}

/// The numbers that fit an expected error. A cut file may have lost its header as well.
std::set<int> FailuresFor(const std::string& error)
{
    using Numbers = std::set<int>;
    for (const auto& [words, numbers] :
         {std::pair{"password", Numbers{failure::kInvalidPassword}},
          {"no table", Numbers{failure::kTableNotFound}},
          {"linked", Numbers{failure::kTableNotFound}},
          {"no column", Numbers{failure::kNoSuchQueryColumn}},
          {"truncated", Numbers{failure::kDatabaseDamaged, failure::kUnrecognisedFormat}}})
        if (error.find(words) != std::string::npos)
            return numbers;
    return {failure::kUnrecognisedFormat};
}

void ExpectAnIndexAndASortToGiveTheSameOrder(const fs::path& database)
{
    const PageFile file(std::make_unique<FileSource>(database.string()), database.string());
    const TableDefinition table = FindTable(file, "trans");
    const Column& column = *table.Find("ref");
    const auto byIndex = PositionsByIndex(file, table, column);
    EXPECT_TRUE(!byIndex || *byIndex == PositionsBySorting(file, table, column));
}

void ExpectDatabase(const fs::path& path, const Json& expected)
{
    const auto open = [&](const std::string& connect) {
        return Engine()
            .OpenDatabase(path.string(), connect)
            ->OpenRecordset("SELECT * FROM trans ORDER BY ref");
    };
    const std::string connect = path.extension() == ".sdd" ? "MS Access;PWD=4073" : "";
    if (expected["expect"] == "error") {
        const int number = FailureOf([&] { return open(connect); });
        EXPECT_TRUE(FailuresFor(expected["error"]).contains(number)) << number;
        const bool rightPasswordOpens = expected["password"].is_string();
        if (rightPasswordOpens)
            ExpectRows(*open("MS Access;PWD=" + expected["password"].get<std::string>()), expected["rows"]);
        return;
    }
    const bool hasRows = expected.contains("rows");
    ExpectRows(
        *open(connect),
        (hasRows ? expected : ReadJson(path.parent_path() / expected["rowsFrom"].get<fs::path>()))["rows"]);
    ExpectAnIndexAndASortToGiveTheSameOrder(path);
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
        SCOPED_TRACE(database.filename().string());
        EXPECT_NO_THROW(ExpectDatabase(database, ReadJson(entry.path())));
    }
    EXPECT_GT(files, 0) << "no databases in " << corpus;
    std::cout << files << " databases compared\n";
}

}  // namespace
}  // namespace platform::jet
