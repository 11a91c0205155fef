#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// Qt alone would end at the first of these, with a message or without one.
TEST(Program, TakesNoCommandLine)
{
    const QTemporaryDir folder;
    const QString program = folder.filePath("Trellivan");
    ASSERT_TRUE(QFile::copy(TRELLIVAN_PROGRAM, program));
    for (const QStringList& arguments : {QStringList{"-platform", "none"}, QStringList{"-qmljsdebugger", "x"},
                                         QStringList{"--help", "-style", "x"}}) {
        const QString log = folder.filePath("Trellivan Error.log");
        QFile::remove(log);
        QProcess process;
        process.start(program, arguments);
        // The first thing that it does is to look for its settings, which are not there.
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return QFile::exists(log) || process.state() == QProcess::NotRunning; }, 60'000));
        EXPECT_TRUE(QFile::exists(log)) << arguments.join(' ').toStdString();
        process.kill();
        process.waitForFinished();
        EXPECT_EQ(process.readAllStandardError().count("Unknown"), 0);
    }
}

}  // namespace
