#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/error_log.h"

namespace player {

/// One kind of error and how often it came.
struct CountedError {
    int number = 0;
    std::string procedure;
    std::string description;
    std::int64_t count = 0;
};

/// Error records, equal ones counted, in the order in which each came first. Beyond a number of kinds the others are
/// counted together, so that memory stays small.
class ErrorList final : public platform::ErrorLog {
public:
    void Write(const std::string& path, const platform::ErrorRecord& record) override;
    void Trim(const std::string& /*path*/, std::int32_t /*lineLimit*/,
              platform::DateTime /*ageCutoff*/) override
    {}

    void Add(const CountedError& error);

    [[nodiscard]] const std::vector<CountedError>& Errors() const { return errors_; }

    /// Called with each record as it comes; may be empty.
    std::function<void(const platform::ErrorRecord& record)> onRecord;

private:
    static constexpr std::size_t kMostKinds = 100;

    std::vector<CountedError> errors_;
};

}  // namespace player
