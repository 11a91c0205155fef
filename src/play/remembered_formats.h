#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/regional_formats.h"

namespace player {

/// Regional formats that remember the texts of the last days and times. To write them anew takes more processor time
/// than all else that is done for a record, and the tills of a shop mostly ask for the same ones.
class RememberedFormats final : public platform::RegionalFormats {
public:
    /// The formats outlive this object.
    explicit RememberedFormats(const platform::RegionalFormats& formats) : formats_(formats) {}

    [[nodiscard]] std::string LongTime(platform::DateTime moment) const override;
    [[nodiscard]] std::string ShortDate(platform::DateTime moment) const override;
    [[nodiscard]] std::string DecimalSign() const override { return formats_.DecimalSign(); }
    [[nodiscard]] std::optional<double> Number(std::string_view text) const override
    {
        return formats_.Number(text);
    }
    [[nodiscard]] std::optional<platform::DateTime> DateOrTime(std::string_view text) const override
    {
        return formats_.DateOrTime(text);
    }

private:
    /// A table in which each number has one place, and shares it with others.
    class Texts {
    public:
        explicit Texts(std::size_t places) : places_(places) {}

        template <class Write>
        const std::string& Of(std::int64_t number, const Write& write)
        {
            auto& [known, text] = places_[static_cast<std::uint64_t>(number) % places_.size()];
            if (known != number || text.empty()) {
                text = write();
                known = number;
            }
            return text;
        }

    private:
        std::vector<std::pair<std::int64_t, std::string>> places_;
    };

    // More than a shop is open a day, in seconds. Times are told apart by the millisecond, and whole seconds share no
    // place, because this is a prime.
    static constexpr std::size_t kTimes = 40009;
    static constexpr std::size_t kDays = 61;

    const platform::RegionalFormats& formats_;
    mutable Texts days_{kDays};
    mutable Texts times_{kTimes};
};

}  // namespace player
