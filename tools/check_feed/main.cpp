#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "check_feed/feed_check.h"
#include "make_database/receipt_reader.h"
#include "platform/failure.h"
#include "platform/failure_numbers.h"

namespace {

constexpr const char* kUsage =
    "Usage: check_feed TRANSACTIONS.csv RECEIVED\n"
    "\n"
    "Compares the bytes that a receiver saved with the feed of the database that make_database makes from "
    "the same CSV.\n"
    "Prints how many records came, whole and in order. Exit code 0 when all came and nothing else.\n";

std::ifstream Open(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw platform::Failure(platform::failure::kPathFileAccess, path + " cannot be read");
    return file;
}

std::vector<tools::Receipt> ReceiptsOf(const std::string& path)
{
    std::ifstream file = Open(path);
    tools::ReceiptReader reader(file);
    std::vector<tools::Receipt> receipts;
    for (tools::Receipt receipt; reader.Next(receipt);)
        receipts.push_back(receipt);
    return receipts;
}

std::string ContentOf(const std::string& path)
{
    std::ifstream file = Open(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    try {
        const auto feed = tools::FeedOf(ReceiptsOf(arguments[1]));
        const std::string received = ContentOf(arguments[2]);
        const auto check = tools::CheckFeed(feed, received);
        const bool same = check.records == feed.size() && check.bytes == received.size();
        std::printf("%zu of %zu records, %zu of %zu bytes received: %s\n", check.records, feed.size(),
                    check.bytes, received.size(), same ? "all of the feed, in order" : "not the same");
        return same ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "check_feed: %s\n", failure.what());
        return 1;
    }
}
