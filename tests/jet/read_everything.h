#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "jet/memory_source.h"
#include "platform/failure.h"
#include "platform/jet/damage_report.h"
#include "platform/jet/database_file.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {

/// Opens a database in memory and reads every column of every row of the table trans. Returns the Failures
/// that come on the way; anything else that is thrown goes through.
inline std::vector<Failure> ReadEverything(const std::string& bytes, const std::string& password)
{
    constexpr std::uint64_t kReadsForEachPage = 4'000;
    const std::uint64_t mostReads = 20'000 + kReadsForEachPage * bytes.size() / kJet3Layout.pageSize;
    const auto source = [&] { return std::make_unique<MemorySource>(bytes, mostReads); };

    std::vector<Failure> failures;
    const auto attempt = [&](const std::function<void()>& step) {
        try {
            step();
        } catch (const Failure& failure) {
            failures.push_back(failure);
        }
    };
    attempt([&] {
        const auto records =
            OpenDatabaseFile(source(), "memory", password)->OpenRecordset("SELECT * FROM trans ORDER BY ref");
        const TableDefinition table =
            ReportingDamage("memory", [&] { return FindTable(PageFile(source(), "memory"), "trans"); });
        for (; !records->AtEOF(); records->MoveNext())
            for (const Column& column : table.columns)
                attempt([&] { (void)records->Field(column.name); });
    });
    return failures;
}

}  // namespace platform::jet
