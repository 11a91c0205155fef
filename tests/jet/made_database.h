#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "jet/memory_source.h"
#include "make_database/database_writer.h"
#include "platform/jet/database_file.h"

namespace platform::jet {

inline constexpr const char* kQuery = "SELECT * FROM trans ORDER BY ref";

/// Rows with the refs from 1 and the texts "receipt 1" and so on, or another word.
inline std::vector<tools::Receipt> Receipts(std::int32_t count, const std::string& word = "receipt")
{
    std::vector<tools::Receipt> receipts;
    for (std::int32_t ref = 1; ref <= count; ++ref)
        receipts.push_back({ref, word + " " + std::to_string(ref), 38047.5, std::nullopt});
    return receipts;
}

inline std::unique_ptr<MemorySource> Memory(const std::string& bytes,
                                            std::uint64_t mostPages = ~std::uint64_t{0})
{
    return std::make_unique<MemorySource>(bytes, mostPages);
}

inline std::unique_ptr<RecordSet> OpenInMemory(const std::string& bytes, const std::string& password = "")
{
    return OpenDatabaseFile(Memory(bytes), "memory", password)->OpenRecordset(kQuery);
}

/// For tests of both formats.
class FormatTest : public testing::TestWithParam<tools::Format> {
protected:
    FormatTest() { options_.format = GetParam(); }

    [[nodiscard]] const Layout& FileLayout() const
    {
        return GetParam() == tools::Format::kJet3 ? kJet3Layout : kJet4Layout;
    }

    tools::DatabaseOptions options_;
};

inline const auto kBothFormats = testing::Values(tools::Format::kJet3, tools::Format::kJet4);

inline std::string FormatName(const testing::TestParamInfo<tools::Format>& test)
{
    return test.param == tools::Format::kJet3 ? "Jet3" : "Jet4";
}

}  // namespace platform::jet
