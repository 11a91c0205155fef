#include "make_database/database_writer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "make_database/catalogue.h"
#include "make_database/header.h"
#include "make_database/row_encoder.h"
#include "make_database/table_definition.h"
#include "make_database/text_encoding.h"
#include "make_database/usage_map.h"
#include "platform/failure.h"

namespace tools {
namespace {

/// Pages whose place is settled before the first row; data pages follow.
constexpr std::uint32_t kHeaderPage = 0;
constexpr std::uint32_t kFreePagesPage = 1;
constexpr std::uint32_t kTransPage = 3;
constexpr std::uint32_t kUsageMapsPage = 4;
constexpr std::uint32_t kSettledPages = 5;

constexpr std::array kColumns = {
    Column{"ref", ColumnType::kLong},
    Column{"rawtransaction", ColumnType::kMemo},
    Column{"timestamp", ColumnType::kDateTime},
    Column{"datetimestamp", ColumnType::kDateTime},
};

std::optional<Bytes> DateCell(std::optional<double> dayNumber)
{
    if (!dayNumber)
        return std::nullopt;
    return NumberBytes(std::bit_cast<std::uint64_t>(*dayNumber));
}

/// The map of the file's own free pages: it has none.
void WriteFreePages(PageOutput& output)
{
    DataPage page(output.FileLayout(), kFreePagesPage);
    page.Add(BuildUsageMap(output, {}));
    page.Add(BuildUsageMap(output, {}));
    output.Write(kFreePagesPage, page.Content());
}

}  // namespace

DuplicateRef::DuplicateRef(std::int32_t ref)
    : Failure(platform::failure::kTypeMismatch, "ref " + std::to_string(ref) + " stands in two rows"),
      ref_(ref)
{}

DatabaseWriter::DatabaseWriter(PageStore& store, DatabaseOptions options)
    : options_(std::move(options)),
      output_(store, LayoutOf(options_.format)),
      rows_(output_, kTransPage),
      receipts_(output_, std::min(options_.inlineLimit, DatabaseOptions::kMostInline))
{
    for (std::uint32_t page = 0; page < kSettledPages; ++page)
        output_.Allocate();
    output_.Write(kHeaderPage, BuildHeader(output_.FileLayout(), options_.password, options_.created));
}

void DatabaseWriter::Add(const Receipt& receipt)
{
    if (options_.index && !receipt.ref)
        throw platform::Failure(platform::failure::kTypeMismatch, "ref is empty");
    Cells cells(kColumns.size());
    if (receipt.ref)
        cells[0] = NumberBytes(*receipt.ref);
    if (receipt.rawtransaction)
        cells[1] = receipts_.Store(EncodeText(*receipt.rawtransaction, options_.format, options_.compress));
    cells[2] = DateCell(receipt.timestamp);
    cells[3] = DateCell(receipt.datetimestamp);
    const RowPointer row = rows_.Add(EncodeRow(output_.FileLayout(), kColumns, cells));
    if (options_.index)
        indexEntries_.push_back(IndexEntry(*receipt.ref, row));
    ++rowCount_;
}

void DatabaseWriter::Finish()
{
    std::ranges::sort(indexEntries_);
    const auto twice = std::ranges::adjacent_find(indexEntries_, std::ranges::equal_to{}, IndexKey);
    if (twice != indexEntries_.end())
        throw DuplicateRef(IndexKey(*twice));

    rows_.Flush();
    receipts_.Flush();
    WriteFreePages(output_);
    UsageMapPage maps(output_, kUsageMapsPage);
    TableDefinition trans = {.kind = TableKind::kUser,
                             .columns = kColumns,
                             .rowCount = rowCount_,
                             .maps = {maps.Add(rows_.Pages()), maps.Add({})},
                             .longValueMaps = {maps.Add(receipts_.Pages()), maps.Add({})},
                             .primaryKey = std::nullopt};
    if (options_.index) {
        const IndexPages index = WriteIndex(output_, kTransPage, indexEntries_);
        trans.primaryKey = PrimaryKey{maps.Add(index.pages), index.root};
    }
    output_.Write(kTransPage, BuildTableDefinition(output_.FileLayout(), trans));
    WriteCatalogue(output_, maps, kTransPage, options_.created);
    maps.Write();
}

Bytes DatabaseBytes(std::span<const Receipt> receipts, const DatabaseOptions& options)
{
    MemoryPages pages;
    DatabaseWriter writer(pages, options);
    for (const Receipt& receipt : receipts)
        writer.Add(receipt);
    writer.Finish();
    return pages.Content();
}

}  // namespace tools
