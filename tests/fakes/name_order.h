#pragma once

#include <string>
#include <utility>

#include "platform/conversions.h"

namespace platform::fakes {

/// Orders names, and pairs of names, without regard to letter case.
struct NameOrder {
    using Pair = std::pair<std::string, std::string>;

    bool operator()(const std::string& one, const std::string& other) const
    {
        return LowerCase(one) < LowerCase(other);
    }
    bool operator()(const Pair& one, const Pair& other) const { return Lower(one) < Lower(other); }

private:
    static Pair Lower(const Pair& names) { return {LowerCase(names.first), LowerCase(names.second)}; }
};

}  // namespace platform::fakes
