#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/failure.h"

namespace trellivan {

/// The failure that a procedure of the continue style carries to its end: each step is tried on its own, a
/// failing one is skipped, and the last failure is the one that gets recorded.
///
/// Nothing is recorded by itself: a procedure that returns early leaves no record.
class PendingFailure {
public:
    /// Tries one step. A failure becomes the pending one.
    template <class Action>
    void Step(Action&& action)
    {
        try {
            std::forward<Action>(action)();
        } catch (...) {
            last_ = platform::CurrentFailure();
        }
    }

    /// Tries a test that guards other steps. True when it holds or fails: a failing test lets the guarded
    /// steps run.
    template <class Condition>
    [[nodiscard]] bool Test(Condition&& condition)
    {
        bool holds = true;
        Step([&] { holds = std::forward<Condition>(condition)(); });
        return holds;
    }

    [[nodiscard]] bool Exists() const { return last_.has_value(); }

    /// The failure's number in decimal, "0" when none is pending.
    [[nodiscard]] std::string Number() const { return std::to_string(last_ ? last_->Number() : 0); }

    /// The failure's description, empty when none is pending.
    [[nodiscard]] std::string Description() const { return last_ ? last_->Description() : std::string(); }

    void Clear() { last_.reset(); }

private:
    std::optional<platform::Failure> last_;
};

/// Runs an action of which a failure leaves no record and stops nothing.
template <class Action>
void IgnoringFailure(Action&& action)
{
    PendingFailure().Step(std::forward<Action>(action));
}

}  // namespace trellivan
