#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fakes/journal.h"
#include "platform/controls.h"
#include "platform/conversions.h"
#include "platform/timer.h"

/// The window's controls, held in memory: a program plays the operator by setting what he would type, and
/// reads what he would see.
namespace platform::fakes {

class Window : public platform::Window, private Journaled {
public:
    Window(Journal& journal, const std::string& name) : Journaled(journal, name) {}
    void SetCaption(const std::string& text) override { Keep("SetCaption", text, caption); }

    std::string caption;
};

class TextBox : public platform::TextBox, private Journaled {
public:
    TextBox(Journal& journal, const std::string& name) : Journaled(journal, name) {}
    [[nodiscard]] std::string Text() const override { return Read("Text", text); }
    void SetText(const std::string& newText) override { Keep("SetText", newText, text); }

    std::string text;
};

class CheckBox : public platform::CheckBox, private Journaled {
public:
    CheckBox(Journal& journal, const std::string& name) : Journaled(journal, name) {}
    [[nodiscard]] int Value() const override { return Read("Value", value); }
    void SetValue(int newValue) override
    {
        Call("SetValue", std::to_string(newValue));
        RefuseIf(newValue < kUnticked || newValue > kNeither, failure::kInvalidPropertyValue,
                 "No check box has this value");
        value = newValue;
    }

    int value = kUnticked;
};

class DropDownList : public platform::DropDownList, private Journaled {
public:
    DropDownList(Journal& journal, const std::string& name) : Journaled(journal, name) {}
    void AddItem(const std::string& item) override
    {
        Call("AddItem", item);
        items.push_back(item);
    }
    [[nodiscard]] std::string Text() const override { return Read("Text", text); }
    void SetText(const std::string& newText) override
    {
        Call("SetText", newText);
        const auto found = std::ranges::find(items, UpperCase(newText), UpperCase);
        if (found == items.end())
            throw Failure(failure::kTextNotInList, newText + " is not an item of the list");
        text = *found;
    }

    std::vector<std::string> items;
    std::string text;
};

class ListBox : public platform::ListBox, private Journaled {
public:
    ListBox(Journal& journal, const std::string& name) : Journaled(journal, name) {}
    void AddItem(const std::string& line) override
    {
        Call("AddItem", line);
        lines.push_back(line);
    }
    void SetListIndex(std::int32_t index) override
    {
        Call("SetListIndex", std::to_string(index));
        RefuseIf(index > 32767, failure::kOverflow, "Overflow");  // as in the window
        RefuseIf(index < -1 || index >= static_cast<std::int64_t>(lines.size()),
                 failure::kInvalidPropertyValue, "The list has no such line");
        selected = index;
    }
    void Clear() override
    {
        Call("Clear");
        lines.clear();
        selected = -1;
    }

    std::vector<std::string> lines;
    std::int32_t selected = -1;  // -1: none
};

class CommandButton : public platform::CommandButton {};

class Timer : public platform::Timer, private Journaled {
public:
    Timer(Journal& journal, const std::string& name) : Journaled(journal, name) {}
    void SetInterval(int milliseconds) override
    {
        Call("SetInterval", std::to_string(milliseconds));
        RefuseIf(milliseconds < 0, failure::kInvalidPropertyValue, "A negative interval");
        interval = milliseconds;
    }
    void SetEnabled(bool nowEnabled) override
    {
        Call("SetEnabled", nowEnabled ? "true" : "false");
        enabled = nowEnabled;
    }

    int interval = 0;
    bool enabled = false;
};

class OpenFileDialog : public platform::OpenFileDialog, private Journaled {
public:
    OpenFileDialog(Journal& journal, const std::string& name) : Journaled(journal, name) {}
    void SetCancelError(bool value) override { Call("SetCancelError", value ? "true" : "false"); }
    void SetFilter(const std::string& filter) override { Call("SetFilter", filter); }
    void ShowOpen() override
    {
        Call("ShowOpen");
        if (!choice)
            throw Failure(failure::kDialogCancelled, "Cancel was selected");
    }
    [[nodiscard]] std::string FileName() const override { return Read("FileName", *choice); }

    std::optional<std::string> choice;  // none: the operator cancels
};

}  // namespace platform::fakes
