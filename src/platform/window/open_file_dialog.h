#pragma once

#include <QStringList>
#include <QWidget>

#include "platform/controls.h"

namespace platform::window {

/// Qt's own file dialog. It starts in the folder of the file chosen last, changes no files, and leaves nothing behind.
class OpenFileDialog final : public platform::OpenFileDialog {
public:
    /// The dialog is modal to this window, which outlives it.
    explicit OpenFileDialog(QWidget& window) : window_(window) {}

    void SetCancelError(bool cancelError) override { cancelError_ = cancelError; }
    void SetFilter(const std::string& filter) override;
    void ShowOpen() override;
    [[nodiscard]] std::string FileName() const override;

private:
    QWidget& window_;
    bool cancelError_ = false;
    QStringList filters_;
    QString fileName_;
};

}  // namespace platform::window
