#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/event_gate.h"

/// The window's controls without a window: each holds its plain state.
namespace player {

class Window final : public platform::Window {
public:
    void SetCaption(const std::string& /*caption*/) override {}
};

class TextBox final : public platform::TextBox {
public:
    [[nodiscard]] std::string Text() const override { return text_; }
    void SetText(const std::string& text) override { text_ = text; }

private:
    std::string text_;
};

class DropDownList final : public platform::DropDownList {
public:
    void AddItem(const std::string& item) override { items_.push_back(item); }
    [[nodiscard]] std::string Text() const override { return text_; }
    void SetText(const std::string& text) override;

private:
    std::vector<std::string> items_;
    std::string text_;
};

class CheckBox final : public platform::CheckBox {
public:
    [[nodiscard]] int Value() const override { return value_; }
    void SetValue(int value) override;

private:
    int value_ = kUnticked;
};

/// Passes its lines on and keeps none, so that a feed of any length takes no memory. Any line can be selected.
class ListBox final : public platform::ListBox {
public:
    void AddItem(const std::string& line) override { platform::Raise(onLine, line); }
    void SetListIndex(std::int32_t /*index*/) override {}
    void Clear() override {}

    std::function<void(const std::string& line)> onLine;
};

class CommandButton final : public platform::CommandButton {};

/// Nobody is there to choose a file: it is always cancelled.
class OpenFileDialog final : public platform::OpenFileDialog {
public:
    void SetCancelError(bool /*cancelError*/) override {}
    void SetFilter(const std::string& /*filter*/) override {}
    void ShowOpen() override;
    [[nodiscard]] std::string FileName() const override { return {}; }
};

}  // namespace player
