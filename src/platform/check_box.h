#pragma once

namespace platform {

/// A box that the operator ticks: its value is one of the three below. It raises no events: whoever needs the
/// value reads it.
class CheckBox {
public:
    static constexpr int kUnticked = 0;
    static constexpr int kTicked = 1;
    static constexpr int kNeither = 2;

    virtual ~CheckBox() = default;

    [[nodiscard]] virtual int Value() const = 0;

    /// Failure: kInvalidPropertyValue for any other value.
    virtual void SetValue(int value) = 0;
};

}  // namespace platform
