#include "play/record_span.h"

#include <charconv>
#include <compare>

#include "platform/conversions.h"
#include "platform/value.h"
#include "play/usage_error.h"

namespace player {
namespace {

using platform::DateTime;
using platform::Value;

/// A number in the form in which everybody writes one on a command line, or in the user's own.
double NumberIn(const std::string& bound, const platform::RegionalFormats& formats)
{
    double number = 0;
    const char* const end = bound.data() + bound.size();
    const auto read = std::from_chars(bound.data(), end, number);
    if (read.ec == std::errc() && read.ptr == end)
        return number;
    if (const auto regional = formats.Number(bound))
        return *regional;
    throw UsageError("\"" + bound + "\" is no number, as the refs of this database are");
}

DateTime MomentIn(const std::string& bound, const platform::RegionalFormats& formats)
{
    if (const auto moment = formats.DateOrTime(bound))
        return *moment;
    throw UsageError("\"" + bound + "\" is no date, as the refs of this database are");
}

/// How a `ref` stands to a bound. Texts are equal or not, whatever their order.
class Comparison {
public:
    Comparison(const std::string& bound, const platform::RegionalFormats& formats)
        : bound_(bound), formats_(formats)
    {}

    std::partial_ordering operator()(platform::Null) const { return std::partial_ordering::less; }
    std::partial_ordering operator()(bool ref) const { return With(ref ? -1 : 0); }
    std::partial_ordering operator()(std::int32_t ref) const { return With(ref); }
    std::partial_ordering operator()(float ref) const { return With(ref); }
    std::partial_ordering operator()(double ref) const { return With(ref); }
    std::partial_ordering operator()(const platform::ExactNumber& ref) const
    {
        return With(NumberIn(ref.digits, formats_));
    }
    std::partial_ordering operator()(DateTime ref) const { return ref <=> MomentIn(bound_, formats_); }
    std::partial_ordering operator()(const platform::Guid& ref) const { return WithText(ref.text); }
    std::partial_ordering operator()(const std::string& ref) const { return WithText(ref); }
    std::partial_ordering operator()(const platform::Binary&) const
    {
        return std::partial_ordering::unordered;
    }

private:
    [[nodiscard]] std::partial_ordering With(double ref) const { return ref <=> NumberIn(bound_, formats_); }
    [[nodiscard]] std::partial_ordering WithText(const std::string& ref) const
    {
        return platform::SameName(ref, bound_) ? std::partial_ordering::equivalent
                                               : std::partial_ordering::unordered;
    }

    const std::string& bound_;
    const platform::RegionalFormats& formats_;
};

std::string InWords(const RefRange& range)
{
    return (range.from ? " from ref " + *range.from : "") + (range.to ? " to ref " + *range.to : "");
}

}  // namespace

RecordSpan FindSpan(platform::RecordSet& records, const RefRange& range,
                    const platform::RegionalFormats& formats)
{
    if (!range.from && !range.to)
        return {0, records.RecordCount()};
    std::optional<std::int64_t> first;
    std::optional<std::int64_t> last;
    for (std::int64_t position = 0; !records.AtEOF(); ++position, records.MoveNext()) {
        const Value ref = records.Field("ref");
        if (!first && (!range.from || std::is_gteq(std::visit(Comparison(*range.from, formats), ref))))
            first = position;
        const auto toEnd =
            range.to ? std::visit(Comparison(*range.to, formats), ref) : std::partial_ordering::equivalent;
        if (std::is_gt(toEnd))
            break;
        if (std::is_lteq(toEnd))
            last = position;
    }
    if (!first || !last || *last < *first)
        throw UsageError("There is no record" + InWords(range));
    return {*first, *last - *first + 1};
}

}  // namespace player
