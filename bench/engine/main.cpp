#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engine/child_process.h"
#include "engine/databases.h"
#include "platform/jet/engine.h"
#include "platform/posix/file_descriptor.h"
#include "support/temporary_folder.h"

namespace {

using bench::Cost;
using bench::Storage;

/// One database, made when it is first asked for.
class DatabaseFile {
public:
    DatabaseFile(std::string path, std::int32_t receipts, Storage storage)
        : path_(std::move(path)), receipts_(receipts), storage_(storage)
    {}

    [[nodiscard]] const std::string& Path() const
    {
        // In a process of its own, so that this one stays small: the measured ones begin as its copies.
        if (!std::filesystem::exists(path_))
            (void)bench::CostOf([&] { bench::MakeDatabase(path_, receipts_, storage_); });
        return path_;
    }

private:
    std::string path_;
    std::int32_t receipts_;
    Storage storage_;
};

void ReadPlainly(const std::string& path)
{
    constexpr std::size_t kPiece = std::size_t{256} * 1024;
    const platform::FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::vector<char> piece(kPiece);
    off_t offset = 0;
    for (ssize_t size = 1; size > 0; offset += size)
        size = pread(file.Number(), piece.data(), piece.size(), offset);
}

std::unique_ptr<platform::RecordSet> OpenRecords(const std::string& path)
{
    return platform::jet::Engine().OpenDatabase(path, "")->OpenRecordset("SELECT * FROM trans ORDER BY ref");
}

void ReadRecord(const platform::RecordSet& records)
{
    for (const char* column : {"ref", "rawtransaction", "timestamp", "datetimestamp"})
        benchmark::DoNotOptimize(records.Field(column));
}

void ReadFirstRecord(const std::string& path)
{
    ReadRecord(*OpenRecords(path));
}

void ReadAllRecords(const std::string& path)
{
    for (const auto records = OpenRecords(path); !records->AtEOF(); records->MoveNext())
        ReadRecord(*records);
}

using Subject = Cost (*)(const std::string& path);

template <void (*work)(const std::string&)>
Cost InChild(const std::string& path)
{
    return bench::CostOf([&] { work(path); });
}

Cost MdbExport(const std::string& path)
{
    return bench::CostOfProgram({"mdb-export", path, "trans"});
}

void Measure(benchmark::State& state, const DatabaseFile& file, Subject subject)
{
    constexpr double kKilobytesPerMegabyte = 1024;
    long peak = 0;
    try {
        const std::string& path = file.Path();
        for (auto _ : state) {
            const Cost cost = subject(path);
            state.SetIterationTime(cost.seconds);
            peak = std::max(peak, cost.peakKilobytes);
        }
        state.counters["file_MB"] = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    } catch (const std::exception& error) {
        state.SkipWithError(error.what());
    }
    state.counters["peak_MiB"] = static_cast<double>(peak) / kKilobytesPerMegabyte;
}

struct NamedStorage {
    Storage storage;
    const char* name;
};
constexpr std::array kStorages = {NamedStorage{Storage::kIndexed, "index"},
                                  NamedStorage{Storage::kInOrder, "no_index"},
                                  NamedStorage{Storage::kShuffled, "no_index_shuffled"}};

struct NamedSubject {
    Subject subject;
    const char* name;
};
constexpr std::array kSubjects = {
    NamedSubject{InChild<ReadPlainly>, "plain_pass"}, NamedSubject{InChild<ReadFirstRecord>, "first_record"},
    NamedSubject{InChild<ReadAllRecords>, "full_read"}, NamedSubject{MdbExport, "mdb_export"}};

void Register(const TemporaryFolder& folder)
{
    for (const std::int32_t receipts : {1'000, 100'000, 1'000'000})
        for (const NamedStorage& storage : kStorages) {
            const std::string name = std::to_string(receipts) + "/" + storage.name;
            const std::string fileName = std::to_string(receipts) + storage.name + ".mdb";
            const DatabaseFile file(folder.Path(fileName), receipts, storage.storage);
            for (const NamedSubject& subject : kSubjects)
                benchmark::RegisterBenchmark((name + "/" + subject.name).c_str(), Measure, file,
                                             subject.subject)
                    ->UseManualTime()
                    ->Unit(benchmark::kMillisecond);
        }
}

}  // namespace

int main(int count, char** words)
{
    benchmark::Initialize(&count, words);
    if (benchmark::ReportUnrecognizedArguments(count, words))
        return 1;
    const TemporaryFolder folder;
    Register(folder);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
