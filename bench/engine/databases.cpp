#include "engine/databases.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "make_database/database_writer.h"
#include "platform/posix/file_descriptor.h"

namespace bench {
namespace {

constexpr double kFirstDay = 44330;  // 14 May 2021
constexpr double kSecondsPerDay = 86400;
constexpr double kSecondsBetweenReceipts = 7;

std::string TextOf(std::int32_t ref)
{
    const std::string number = std::to_string(ref);
    const std::string amount = std::to_string(ref % 90 + 10) + "." + std::to_string(ref % 89 + 10);
    return "RECEIPT " + number + "  TILL " + std::to_string(ref % 7 + 1) +
           "\r\n"
           "Espresso                2.40\r\n"
           "Ham and cheese toast    6.90\r\n"
           "Orange juice, fresh     4.20\r\n"
           "Apple cake, one slice   3.80\r\n"
           "TOTAL                  " +
           amount +
           "\r\n"
           "CARD  ************4021\r\n"
           "Thank you, come again!";
}

tools::Receipt ReceiptOf(std::int32_t ref)
{
    const double time = kFirstDay + ref * kSecondsBetweenReceipts / kSecondsPerDay;
    return {.ref = ref, .rawtransaction = TextOf(ref), .timestamp = time, .datetimestamp = time};
}

std::vector<std::int32_t> Refs(std::int32_t receipts, Storage storage)
{
    std::vector<std::int32_t> refs(static_cast<std::size_t>(receipts));
    std::iota(refs.begin(), refs.end(), 1);
    if (storage == Storage::kShuffled)
        std::ranges::shuffle(refs, std::mt19937(1));
    return refs;
}

}  // namespace

void MakeDatabase(const std::string& path, std::int32_t receipts, Storage storage)
{
    tools::FilePages pages(path);
    tools::DatabaseOptions options;
    options.index = storage == Storage::kIndexed;
    tools::DatabaseWriter writer(pages, options);
    for (const std::int32_t ref : Refs(receipts, storage))
        writer.Add(ReceiptOf(ref));
    writer.Finish();
    pages.Commit();
    const platform::FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    fsync(file.Number());
}

}  // namespace bench
