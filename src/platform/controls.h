#pragma once

#include <cstdint>
#include <functional>
#include <string>

/// The window, its controls and its dialog, as the logic sees them. Texts are UTF-8. Only a button raises an event; what
/// the operator typed or chose is read when it is needed.
namespace platform {

/// The program's one window.
class Window {
public:
    virtual ~Window() = default;
    virtual void SetCaption(const std::string& caption) = 0;
};

/// A box with one line of text.
class TextBox {
public:
    virtual ~TextBox() = default;
    [[nodiscard]] virtual std::string Text() const = 0;
    virtual void SetText(const std::string& text) = 0;
};

/// A list that shows one selected item; the operator picks an item and cannot type.
class DropDownList {
public:
    virtual ~DropDownList() = default;

    /// Appends an item. The selection stays.
    virtual void AddItem(const std::string& item) = 0;

    /// The selected item as it was added; empty while nothing is selected.
    [[nodiscard]] virtual std::string Text() const = 0;

    /// Selects the item equal to the text without regard to letter case. Failure: kTextNotInList where no
    /// item is; the selection stays.
    virtual void SetText(const std::string& text) = 0;
};

/// A box that the operator ticks: its value is one of the three below.
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

/// A list of any number of lines, in the order in which they were added, with at most one selected.
class ListBox {
public:
    virtual ~ListBox() = default;

    /// Appends a line, which may hold line breaks and any other character. The selection stays.
    virtual void AddItem(const std::string& line) = 0;

    /// Selects the line of this index, counted from 0, and scrolls it into view; -1 selects none. Where it fails, the
    /// selection stays.
    /// Failure: kOverflow where the list's own index, which may have fewer bits, cannot hold this one;
    /// kInvalidPropertyValue where there is no such line.
    virtual void SetListIndex(std::int32_t index) = 0;

    /// Removes all lines.
    virtual void Clear() = 0;
};

/// A button. OnClick comes from the event loop through the gate; it is set once and lives as long as the
/// window.
class CommandButton {
public:
    virtual ~CommandButton() = default;
    std::function<void()> OnClick;
};

/// The modal dialog in which the operator chooses a file.
class OpenFileDialog {
public:
    virtual ~OpenFileDialog() = default;

    /// Whether ShowOpen reports the operator's Cancel as a Failure.
    virtual void SetCancelError(bool cancelError) = 0;

    /// Pairs of name and pattern separated by "|", the patterns of one pair by ";": "Database
    /// Files|*.mdb;*.sdd".
    virtual void SetFilter(const std::string& filter) = 0;

    /// Shows the dialog and returns when the operator has chosen a file, existing or not, or cancelled.
    /// Events of other components wait meanwhile. Failure: kDialogCancelled.
    virtual void ShowOpen() = 0;

    /// Full path of the file chosen last.
    [[nodiscard]] virtual std::string FileName() const = 0;
};

}  // namespace platform
