#include "check_feed/feed_check.h"

#include <algorithm>

#include "make_database/receipt_reader.h"
#include "platform/ansi_code_page.h"

namespace tools {
namespace {

constexpr char kTimeBegins = '\x01';
constexpr char kTimeEnds = '\x02';

std::string_view WithoutRecordedTime(std::string_view received)
{
    const auto end = received.starts_with(kTimeBegins) ? received.find(kTimeEnds) : std::string_view::npos;
    return end == std::string_view::npos ? received : received.substr(end + 1);
}

}  // namespace

std::vector<std::string> FeedOf(std::istream& csv)
{
    ReceiptReader reader(csv);
    std::vector<Receipt> receipts;
    for (Receipt receipt; reader.Next(receipt);)
        receipts.push_back(receipt);
    std::ranges::stable_sort(receipts, {}, &Receipt::ref);
    std::vector<std::string> feed;
    feed.reserve(receipts.size());
    for (const Receipt& receipt : receipts)
        feed.push_back(platform::ToAnsi(receipt.rawtransaction.value_or("")));
    return feed;
}

FeedCheck CheckFeed(const std::vector<std::string>& feed, std::string_view received)
{
    FeedCheck check;
    std::string_view rest = received;
    for (const std::string& record : feed) {
        if (!rest.starts_with(record))
            break;
        rest = WithoutRecordedTime(rest.substr(record.size()));
        ++check.records;
    }
    check.bytes = received.size() - rest.size();
    return check;
}

}  // namespace tools
