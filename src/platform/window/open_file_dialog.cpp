#include "platform/window/open_file_dialog.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>

#include "platform/failure.h"
#include "platform/window/text.h"

namespace platform::window {
namespace {

/// Qt's file dialog, which lets any typed name through.
class Dialog final : public QFileDialog {
public:
    explicit Dialog(QWidget& window) : QFileDialog(&window)
    {
        setOption(DontUseNativeDialog);  // the desktop's may refuse the name of a file that does not exist
        setOption(ReadOnly);             // or a key deletes or renames what is to be opened
        setAcceptMode(AcceptOpen);
        setFileMode(AnyFile);
        setWindowTitle(QStringLiteral("Open"));
        name_ = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        open_ = findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
        open_->installEventFilter(this);
    }

protected:
    /// Qt sometimes leaves the button disabled under a typed path. What the path names is looked at when it is opened.
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == open_ && event->type() == QEvent::EnabledChange && !name_->text().isEmpty())
            open_->setEnabled(true);
        return QFileDialog::eventFilter(watched, event);
    }

private:
    QLineEdit* name_;
    QPushButton* open_;
};

/// Qt's file dialog keeps its history in the user's settings folder. Below a path that can hold no files nothing is kept.
void KeepSettingsOutOfHome()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

}  // namespace

void OpenFileDialog::SetFilter(const std::string& filter)
{
    const QStringList parts = ToQt(filter).split(QLatin1Char('|'));
    filters_.clear();
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        filters_ += parts[i] + QStringLiteral(" (") + patterns.replace(QLatin1Char(';'), QLatin1Char(' ')) +
                    QStringLiteral(")");
    }
}

void OpenFileDialog::ShowOpen()
{
    KeepSettingsOutOfHome();
    Dialog dialog(window_);
    dialog.setNameFilters(filters_);
    if (!fileName_.isEmpty())
        dialog.setDirectory(QFileInfo(fileName_).path());
    if (dialog.exec() == QDialog::Accepted)
        fileName_ = dialog.selectedFiles().constFirst();
    else if (cancelError_)
        throw Failure(failure::kDialogCancelled, "The operator chose no file");
}

std::string OpenFileDialog::FileName() const
{
    return FromQt(fileName_);
}

}  // namespace platform::window
