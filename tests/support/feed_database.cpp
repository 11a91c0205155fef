#include "support/feed_database.h"

#include "make_database/database_writer.h"
#include "support/files.h"

void WriteFeedDatabase(const std::string& path, const Texts& records)
{
    constexpr double kNoon = 38423.5;
    constexpr double kSecond = 1.0 / 86400;
    std::vector<tools::Receipt> receipts;
    for (const std::string& text : records) {
        const auto number = static_cast<std::int32_t>(receipts.size());
        const double time = kNoon + number * kSecond;
        receipts.push_back(
            {.ref = 10 * (number + 1), .rawtransaction = text, .timestamp = time, .datetimestamp = time});
    }
    const tools::Bytes bytes = tools::DatabaseBytes(receipts);
    WriteFile(path, {bytes.begin(), bytes.end()});
}
