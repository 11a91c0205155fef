#include "make_database/receipt_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "make_database/iso_date.h"
#include "platform/ansi_code_page.h"
#include "platform/failure.h"

namespace tools {
namespace {

std::int32_t ToRef(const CsvField& field, std::size_t line)
{
    std::int32_t ref = 0;
    const char* const end = field.text.data() + field.text.size();
    const auto [stop, error] = std::from_chars(field.text.data(), end, ref);
    if (error != std::errc() || stop != end)
        FailAtLine(line, "ref is no whole number of 32 bits: " + field.text);
    return ref;
}

double ToDate(const CsvField& field, std::size_t line)
{
    const auto dayNumber = DayNumberOfIso(field.text);
    if (!dayNumber)
        FailAtLine(line, "not a date or time like 2021-05-14 15:07:09: " + field.text);
    return *dayNumber;
}

}  // namespace

ReceiptReader::ReceiptReader(std::istream& text) : csv_(text)
{
    if (!csv_.Next(record_))
        FailAtLine(1, "the file has no line that names the columns");
    for (const CsvField& name : record_.fields) {
        const Target target = TargetOf(name);
        if (std::ranges::count(targets_, target) > 0)
            FailAtLine(record_.line, "the column " + name.text + " is named twice");
        targets_.push_back(target);
    }
    if (std::ranges::count(targets_, Target::kRef) == 0)
        FailAtLine(record_.line, "the column ref is missing");
    wholeBytes_ = csv_.Position();
}

bool ReceiptReader::IsRecording() const
{
    return targets_ ==
           std::vector{Target::kRef, Target::kTimestamp, Target::kDateTimestamp, Target::kRawTransaction};
}

ReceiptReader::Target ReceiptReader::TargetOf(const CsvField& name) const
{
    static constexpr std::array<std::pair<std::string_view, Target>, 4> kNames = {
        {{"ref", Target::kRef},
         {"rawtransaction", Target::kRawTransaction},
         {"timestamp", Target::kTimestamp},
         {"datetimestamp", Target::kDateTimestamp}}};
    const auto* const found = std::ranges::find(kNames, name.text, &decltype(kNames)::value_type::first);
    if (found == kNames.end())
        FailAtLine(record_.line, "unknown column: " + name.text);
    return found->second;
}

bool ReceiptReader::Next(Receipt& receipt)
{
    receipt = {};
    try {
        if (!csv_.Next(record_))
            return false;
        SetFields(receipt);
        if (!record_.ended && IsRecording() && !receipt.rawtransaction)
            FailAtLine(record_.line, "a recording has a text in every row");
    } catch (const platform::Failure&) {
        if (record_.ended || !csv_.AtEnd() || !IsRecording())
            throw;
        tail_ = CsvTail::kTorn;
        return false;
    }
    if (!record_.ended && IsRecording())
        tail_ = CsvTail::kNoLineEnd;
    wholeBytes_ = csv_.Position();
    return true;
}

void ReceiptReader::SetFields(Receipt& receipt) const
{
    if (record_.fields.size() != targets_.size())
        FailAtLine(record_.line, std::to_string(record_.fields.size()) + " fields for " +
                                     std::to_string(targets_.size()) + " columns");
    for (std::size_t i = 0; i < targets_.size(); ++i)
        SetField(receipt, targets_[i], record_.fields[i]);
}

void ReceiptReader::SetField(Receipt& receipt, Target target, const CsvField& field) const
{
    if (field.text.empty() && !field.quoted)
        return;
    if (!platform::IsUtf8(field.text))
        FailAtLine(record_.line, "the text is not valid UTF-8");
    switch (target) {
        case Target::kRef:
            receipt.ref = ToRef(field, record_.line);
            break;
        case Target::kRawTransaction:
            receipt.rawtransaction = field.text;
            break;
        case Target::kTimestamp:
            receipt.timestamp = ToDate(field, record_.line);
            break;
        case Target::kDateTimestamp:
            receipt.datetimestamp = ToDate(field, record_.line);
            break;
    }
}

}  // namespace tools
