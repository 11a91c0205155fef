#include "platform/window/open_file_dialog.h"

#include <QFileDialog>
#include <QFileInfo>

#include "platform/failure.h"
#include "platform/window/text.h"

namespace platform::window {

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
    QFileDialog dialog(&window_);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::ReadOnly);  // or a key deletes or renames what is to be opened
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setWindowTitle(QStringLiteral("Open"));
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
