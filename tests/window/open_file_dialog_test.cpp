#include "platform/window/open_file_dialog.h"

#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QDirIterator>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <set>

#include "platform/failure.h"
#include "support/failure_of.h"

namespace platform::window {
namespace {

class OpenFileDialogTest : public testing::Test {
protected:
    OpenFileDialogTest() { dialog.SetFilter("Database Files|*.mdb;*.sdd"); }

    /// Shows the dialog to an operator who does this with it.
    void Show(const std::function<void(QFileDialog&)>& operate)
    {
        QTimer::singleShot(0, [&] {
            auto* const shown = window.findChild<QFileDialog*>();
            ASSERT_NE(shown, nullptr);
            operate(*shown);
        });
        dialog.ShowOpen();
    }

    static void Type(QFileDialog& shown, const QString& name)
    {
        shown.findChild<QLineEdit*>("fileNameEdit")->setText(name);
        shown.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
    }

    QTemporaryDir folder;
    QWidget window;
    OpenFileDialog dialog{window};
};

TEST_F(OpenFileDialogTest, GivesTheFullPathOfAFileThatNeedNotExist)
{
    for (const char* name : {"not there.mdb", "improper.txt", "caf\u00E9.sdd"}) {
        const QString path = folder.filePath(QString::fromUtf8(name));
        Show([&](QFileDialog& shown) {
            shown.setDirectory(folder.path());
            Type(shown, QString::fromUtf8(name));
        });
        EXPECT_EQ(dialog.FileName(), path.toStdString());
    }
}

TEST_F(OpenFileDialogTest, OpensATypedPathWithOneEnterOrClick)
{
    QFile(folder.filePath("day.mdb")).open(QIODevice::WriteOnly);
    dialog.SetCancelError(true);
    for (const bool clicks : {false, true, false, true}) {
        Show([&](QFileDialog& shown) {
            auto* const name = shown.findChild<QLineEdit*>("fileNameEdit");
            shown.activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(&shown));
            QTest::keyClicks(name, folder.filePath("day.mdb"));
            // As Qt does at times, by keys that come while it reads the folder.
            auto* const open = shown.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
            open->setEnabled(false);
            clicks ? open->click() : QTest::keyClick(name, Qt::Key_Return);
            if (shown.isVisible())
                shown.reject();
        });
        EXPECT_EQ(dialog.FileName(), folder.filePath("day.mdb").toStdString());
    }
}

TEST_F(OpenFileDialogTest, LeavesNothingInTheHomeFolder)
{
    const auto filesInHome = [] {
        QStringList files;
        QDirIterator each(QDir::homePath(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (each.hasNext())
            files += each.next();
        return files;
    };
    // What other tests may have left.
    QDir home(QDir::homePath());
    ASSERT_TRUE(home.path().startsWith(QDir::tempPath())) << "not that of who runs the tests";
    ASSERT_TRUE(home.removeRecursively() && home.mkpath("."));
    Show([&](QFileDialog& shown) { Type(shown, folder.filePath("day.mdb")); });
    EXPECT_EQ(filesInHome().join(' ').toStdString(), "");
}

TEST_F(OpenFileDialogTest, ReportsCancelAsAskedForAndKeepsTheFile)
{
    const QString path = folder.filePath("day.mdb");
    Show([&](QFileDialog& shown) { Type(shown, path); });
    const auto cancel = [](QFileDialog& shown) { shown.reject(); };
    EXPECT_NO_THROW(Show(cancel));
    dialog.SetCancelError(true);
    EXPECT_EQ(FailureOf([&] { Show(cancel); }), failure::kDialogCancelled);
    EXPECT_EQ(dialog.FileName(), path.toStdString());
}

TEST_F(OpenFileDialogTest, ListsDatabaseFilesInAnyLetterCase)
{
    for (const char* name : {"a.mdb", "B.MDB", "c.Sdd", "d.txt", "e.mdbx"})
        QFile(folder.filePath(name)).open(QIODevice::WriteOnly);
    std::set<QString> listed;
    Show([&](QFileDialog& shown) {
        shown.setDirectory(folder.path());
        EXPECT_EQ(shown.nameFilters(), QStringList{"Database Files (*.mdb *.sdd)"});
        auto* const view = shown.findChild<QListView*>("listView");
        EXPECT_TRUE(QTest::qWaitFor([&] { return view->model()->rowCount(view->rootIndex()) >= 3; }));
        for (int row = 0; row < view->model()->rowCount(view->rootIndex()); ++row) {
            const QModelIndex file = view->model()->index(row, 0, view->rootIndex());
            EXPECT_FALSE(file.flags().testFlag(Qt::ItemIsEditable)) << "a key renames or deletes it";
            listed.insert(file.data().toString());
        }
        shown.reject();
    });
    EXPECT_EQ(listed, (std::set<QString>{"a.mdb", "B.MDB", "c.Sdd"}));
}

}  // namespace
}  // namespace platform::window
