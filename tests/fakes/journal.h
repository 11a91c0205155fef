#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/failure.h"

namespace platform::fakes {

/// What was called on the objects that share it, in order, as texts like "WinsockConnect.Listen" or
/// "txtDBTime.SetText 15:07:09"; and which calls are to fail.
class Journal {
public:
    /// Notes a call; throws the failure that was set for it.
    void Call(const std::string& call)
    {
        const std::size_t index = calls_.size();
        calls_.push_back(call);
        if (failingIndex_ == index)
            throw DefaultFailure();
        if (const auto found = failing_.find(call.substr(0, call.find(' '))); found != failing_.end())
            throw found->second;
    }

    /// Lets every call of this name fail: the entry's text up to its first blank.
    void FailOn(const std::string& name, const Failure& failure = DefaultFailure())
    {
        failing_.insert_or_assign(name, failure);
    }

    /// Lets the call that will be noted at this index fail.
    void FailAt(std::size_t index) { failingIndex_ = index; }

    /// Lets no call fail from now on.
    void FailNothing()
    {
        failing_.clear();
        failingIndex_.reset();
    }

    /// Lets no object refuse a call from now on: what an earlier call left undone does not show in a later one.
    void RefuseNothing() { refuses_ = false; }
    [[nodiscard]] bool Refuses() const { return refuses_; }

    [[nodiscard]] const std::vector<std::string>& Calls() const { return calls_; }

    void Clear() { calls_.clear(); }

    /// Number 5, "told to fail".
    [[nodiscard]] static Failure DefaultFailure() { return {failure::kInvalidCall, "told to fail"}; }

private:
    std::vector<std::string> calls_;
    std::map<std::string, Failure> failing_;
    std::optional<std::size_t> failingIndex_;
    bool refuses_ = true;
};

/// A named object that notes its calls, and refuses what its interface does not allow.
class Journaled {
protected:
    Journaled(Journal& journal, std::string name) : journal_(journal), name_(std::move(name)) {}
    ~Journaled() = default;

    void Call(const std::string& method) const { journal_.Call(name_ + "." + method); }
    void Call(const std::string& method, const std::string& argument) const { Call(method + " " + argument); }

    [[nodiscard]] Journal& Notes() const { return journal_; }

    /// Notes a call and gives what it reads.
    template <class Property>
    [[nodiscard]] Property Read(const std::string& method, const Property& property) const
    {
        Call(method);
        return property;
    }

    /// Notes a call and keeps its argument.
    void Keep(const std::string& method, const std::string& argument, std::string& property) const
    {
        Call(method, argument);
        property = argument;
    }

    void RefuseIf(bool notAllowed, int number, const std::string& description) const
    {
        if (notAllowed && journal_.Refuses())
            throw Failure(number, description);
    }

private:
    Journal& journal_;
    std::string name_;
};

}  // namespace platform::fakes
