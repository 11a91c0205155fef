#include "play/error_list.h"

#include <algorithm>
#include <cstdlib>

#include "platform/event_gate.h"

namespace player {

void ErrorList::Write(const std::string& /*path*/, const platform::ErrorRecord& record)
{
    Add({std::atoi(record.number.c_str()), record.procedure, record.description, 1});
    platform::Raise(onRecord, record);
}

void ErrorList::Add(const CountedError& error)
{
    const auto same = [](const CountedError& one) {
        return [&one](const CountedError& other) {
            return other.number == one.number && other.procedure == one.procedure &&
                   other.description == one.description;
        };
    };
    const CountedError others{0, "play_feed", "errors of further kinds", error.count};
    const auto found = std::ranges::find_if(errors_, same(error));
    if (found != errors_.end())
        found->count += error.count;
    else if (errors_.size() < kMostKinds)
        errors_.push_back(error);
    else if (errors_.size() == kMostKinds)
        errors_.push_back(others);
    else
        errors_.back().count += error.count;
}

}  // namespace player
