#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "check_feed/feed_check.h"
#include "command_line/command.h"
#include "platform/failure.h"

namespace {

constexpr const char* kDescription =
    "Tells how much of a feed a receiver saved, whole and in order.\n"
    "\n"
    "The feed is that of the database that make_database makes from the same CSV. "
    "The exit status is 0 when all of it was received and nothing else.";

std::ifstream Open(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw platform::Failure(platform::failure::kPathFileAccess, path + " cannot be read");
    return file;
}

std::string ContentOf(const std::string& path)
{
    std::ifstream file = Open(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

int Check(const std::string& transactions, const std::string& receivedFile)
{
    std::ifstream csv = Open(transactions);
    const auto feed = tools::FeedOf(csv);
    const std::string received = ContentOf(receivedFile);
    const auto check = tools::CheckFeed(feed, received);
    const bool same = check.records == feed.size() && check.bytes == received.size();
    std::printf("%zu of %zu records, %zu of %zu bytes received: %s\n", check.records, feed.size(),
                check.bytes, received.size(), same ? "all of the feed, in order" : "not the same");
    return same ? tools::kDone : tools::kFailed;
}

}  // namespace

int main(int count, char** words)
{
    std::string transactions;
    std::string received;
    tools::Command command("check_feed", kDescription);
    command.add_option("TRANSACTIONS.csv", transactions, "what the feed was made of")->required();
    command.add_option("RECEIVED", received, "the bytes that the receiver saved")->required();
    return command.Run(count, words, [&] { return Check(transactions, received); });
}
