#include "fakes/journal.h"

#include "platform/failure.h"

namespace platform::fakes {

void Journal::Call(const std::string& call)
{
    const std::size_t index = calls_.size();
    calls_.push_back(call);
    if (failingIndex_ == index)
        throw DefaultFailure();
    if (const auto found = failing_.find(call.substr(0, call.find(' '))); found != failing_.end())
        throw found->second;
}

void Journal::FailOn(const std::string& name, Failure failure)
{
    failing_.insert_or_assign(name, std::move(failure));
}

void Journal::FailNothing()
{
    failing_.clear();
    failingIndex_.reset();
}

Failure Journal::DefaultFailure()
{
    return {failure::kInvalidCall, "told to fail"};
}

}  // namespace platform::fakes
