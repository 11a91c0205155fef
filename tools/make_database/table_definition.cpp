#include "make_database/table_definition.h"

#include "make_database/text_encoding.h"

namespace tools {
namespace {

constexpr std::uint32_t kJet4Record = 0x659;     // begins most records of a Jet 4 definition
constexpr std::uint16_t kJet3PageMark = 0x4356;  // "VC", where Jet 4 has the page's free space
constexpr std::size_t kLengthOffset = 8;
constexpr std::size_t kHeadSize = 8;
constexpr std::uint8_t kFixedLength = 0x01;
constexpr std::uint8_t kMayBeNull = 0x02;
constexpr std::uint8_t kCompressedText = 0x01;
constexpr std::uint16_t kNoColumn = 0xFFFF;
constexpr int kIndexColumns = 10;
constexpr std::uint8_t kAscending = 1;
constexpr std::uint8_t kUniqueAndRequired = 0x09;
constexpr std::uint8_t kPrimaryKeyKind = 1;
constexpr std::uint32_t kNoRelation = 0xFFFFFFFF;
constexpr std::uint16_t kLongestText = 255;

/// The definition in the making, with the fields that only one of the formats has.
class Writer {
public:
    explicit Writer(const Layout& layout) : layout_(layout) {}

    template <class Integer>
    void Put(Integer number)
    {
        Append(bytes, number);
    }

    template <class Integer>
    void PutInJet4(Integer number)
    {
        if (layout_.IsJet4())
            Append(bytes, number);
    }

    template <class Integer>
    void PutInJet3(Integer number)
    {
        if (!layout_.IsJet4())
            Append(bytes, number);
    }

    void PutName(std::string_view name)
    {
        const Bytes text = EncodeText(name, layout_.format, false);
        if (layout_.IsJet4())
            Put(static_cast<std::uint16_t>(text.size()));
        else
            Put(static_cast<std::uint8_t>(text.size()));
        bytes += text;
    }

    Bytes bytes;

private:
    const Layout& layout_;
};

/// Up to where the columns begin.
void PutCounts(Writer& writer, const TableDefinition& table)
{
    std::uint16_t variable = 0;
    for (const Column& column : table.columns)
        variable = static_cast<std::uint16_t>(variable + (FixedSize(column.type) == 0));
    const auto columns = static_cast<std::uint16_t>(table.columns.size());
    const std::uint32_t indexes = table.primaryKey ? 1 : 0;

    writer.PutInJet4(kJet4Record);
    writer.Put(table.rowCount);
    writer.Put(std::uint32_t{0});  // last number given by an autonumber column
    writer.PutInJet4(std::uint64_t{1});
    writer.PutInJet4(std::uint64_t{0});
    writer.Put(static_cast<std::uint8_t>(table.kind));
    writer.Put(columns);  // columns ever, the deleted ones included
    writer.Put(variable);
    writer.Put(columns);
    writer.Put(indexes);
    writer.Put(indexes);  // indexes with entries of their own
    writer.Put(table.maps.ownedPages.AsNumber());
    writer.Put(table.maps.pagesWithRoom.AsNumber());
    if (table.primaryKey) {
        writer.Put(std::uint32_t{0});
        writer.Put(table.rowCount);
        writer.PutInJet4(std::uint32_t{0});
    }
}

struct Place {
    std::uint16_t number = 0;
    std::uint16_t amongVariable = 0;
    std::uint16_t fixedOffset = 0;
};

void PutColumn(Writer& writer, const Column& column, const Place& place)
{
    const auto fixedSize = static_cast<std::uint16_t>(FixedSize(column.type));
    const bool isText = column.type == ColumnType::kText || column.type == ColumnType::kMemo;
    const std::uint16_t size = column.type == ColumnType::kText ? kLongestText : fixedSize;

    writer.Put(column.type);
    writer.PutInJet4(kJet4Record);
    writer.Put(place.number);
    writer.Put(place.amongVariable);
    writer.Put(place.number);
    writer.PutInJet3(std::uint16_t{1});
    writer.Put(kGeneralSortOrder);
    writer.PutInJet3(kCodePage1252);
    writer.PutInJet4(std::uint16_t{0});
    writer.Put(static_cast<std::uint8_t>(kMayBeNull | (fixedSize == 0 ? 0 : kFixedLength)));
    writer.PutInJet4(isText ? kCompressedText : std::uint8_t{0});
    writer.PutInJet4(std::uint32_t{0});
    writer.Put(place.fixedOffset);
    writer.Put(size);
}

void PutColumns(Writer& writer, std::span<const Column> columns)
{
    Place place;
    for (const Column& column : columns) {
        PutColumn(writer, column, place);
        const std::size_t size = FixedSize(column.type);
        ++place.number;
        place.amongVariable = static_cast<std::uint16_t>(place.amongVariable + (size == 0));
        place.fixedOffset = static_cast<std::uint16_t>(place.fixedOffset + size);
    }
    for (const Column& column : columns)
        writer.PutName(column.name);
}

void PutPrimaryKey(Writer& writer, const PrimaryKey& key)
{
    writer.PutInJet4(kJet4Record);
    writer.Put(std::uint16_t{0});
    writer.Put(kAscending);
    for (int i = 1; i < kIndexColumns; ++i) {
        writer.Put(kNoColumn);
        writer.Put(std::uint8_t{0});
    }
    writer.Put(key.usageMap.AsNumber());
    writer.Put(key.rootPage);
    writer.PutInJet4(std::uint32_t{0});
    writer.Put(kUniqueAndRequired);
    writer.PutInJet4(std::uint32_t{0});
    writer.PutInJet4(std::uint8_t{0});

    // The index as it is named, and which of the indexes above it uses.
    writer.PutInJet4(kJet4Record);
    writer.Put(std::uint32_t{0});
    writer.Put(std::uint32_t{0});
    writer.Put(std::uint8_t{0});
    writer.Put(kNoRelation);
    writer.Put(std::uint32_t{0});
    writer.Put(std::uint16_t{0});
    writer.Put(kPrimaryKeyKind);
    writer.PutInJet4(std::uint32_t{0});
    writer.PutName("PrimaryKey");
}

void PutLongValueMaps(Writer& writer, const TableDefinition& table)
{
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const ColumnType type = table.columns[i].type;
        if (type == ColumnType::kMemo || type == ColumnType::kOle) {
            writer.Put(static_cast<std::uint16_t>(i));
            writer.Put(table.longValueMaps.ownedPages.AsNumber());
            writer.Put(table.longValueMaps.pagesWithRoom.AsNumber());
        }
    }
    writer.Put(kNoColumn);
}

}  // namespace

Bytes BuildTableDefinition(const Layout& layout, const TableDefinition& table)
{
    Writer writer(layout);
    writer.bytes =
        NewPage(layout, PageType::kTableDefinition).substr(0, kLengthOffset + sizeof(std::uint32_t));
    PutCounts(writer, table);
    PutColumns(writer, table.columns);
    if (table.primaryKey)
        PutPrimaryKey(writer, *table.primaryKey);
    PutLongValueMaps(writer, table);

    Bytes page = std::move(writer.bytes);
    const std::size_t length = page.size();
    page.resize(layout.pageSize);
    Store(page, kFreeSpaceOffset,
          layout.IsJet4() ? static_cast<std::uint16_t>(layout.pageSize - kHeadSize - length) : kJet3PageMark);
    Store(page, kLengthOffset, static_cast<std::uint32_t>(length));
    return page;
}

}  // namespace tools
