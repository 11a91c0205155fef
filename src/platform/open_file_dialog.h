#pragma once

#include <string>

namespace platform {

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
