#pragma once

namespace platform {

/// A box that the operator ticks. It raises no events: whoever needs the value reads it.
class CheckBox {
public:
    virtual ~CheckBox() = default;

    /// 0 unticked, 1 ticked, 2 neither.
    [[nodiscard]] virtual int Value() const = 0;

    /// Failure: kInvalidPropertyValue for a value outside 0 to 2.
    virtual void SetValue(int value) = 0;
};

}  // namespace platform
