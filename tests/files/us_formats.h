#pragma once

#include <cstdio>
#include <string>

#include "platform/regional_formats.h"

/// Dates as 5/14/2021 and times as 15:07, which is all that the log's trimming asks of regional formats.
/// Counts what it is asked.
class UsFormats final : public platform::RegionalFormats {
public:
    [[nodiscard]] std::string LongTime(platform::DateTime) const override { return {}; }
    [[nodiscard]] std::string ShortDate(platform::DateTime) const override { return {}; }
    [[nodiscard]] std::string DecimalSign() const override { return "."; }
    [[nodiscard]] std::optional<double> Number(std::string_view) const override { return {}; }

    [[nodiscard]] std::optional<platform::DateTime> DateOrTime(std::string_view text) const override
    {
        ++asked;
        const std::string copy(text);
        unsigned first = 0;
        unsigned second = 0;
        int year = 0;
        char rest = 0;
        if (std::sscanf(copy.c_str(), "%u/%u/%d%c", &first, &second, &year, &rest) == 3) {
            const auto day = std::chrono::year{year} / std::chrono::month{first} / std::chrono::day{second};
            return day.ok() ? std::optional<platform::DateTime>(std::chrono::local_days{day}) : std::nullopt;
        }
        if (std::sscanf(copy.c_str(), "%u:%u%c", &first, &second, &rest) == 2)
            return platform::DayZero() + std::chrono::hours{first} + std::chrono::minutes{second};
        return std::nullopt;
    }

    mutable int asked = 0;
};
