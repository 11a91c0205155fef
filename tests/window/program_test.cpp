#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>

namespace {

/// True for a signal that the process lets pass.
bool Ignores(const QProcess& process, int signal)
{
    QFile status("/proc/" + QString::number(process.processId()) + "/status");
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    const QByteArray all = status.readAll();
    constexpr int kHexadecimal = 16;
    const QByteArray ignored = all.mid(all.indexOf("SigIgn:") + 7, 1 + kHexadecimal).trimmed();
    return (ignored.toULongLong(nullptr, kHexadecimal) >> (signal - 1) & 1) != 0;
}

/// Qt alone would end at the first of these, with a message or without one.
TEST(Program, TakesNoCommandLineAndEndsByNoFailedWrite)
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
        for (const int fatal : {SIGXFSZ, SIGPIPE})
            EXPECT_TRUE(Ignores(process, fatal)) << "a write that fails would end the program";
        process.kill();
        process.waitForFinished();
        EXPECT_EQ(process.readAllStandardError().count("Unknown"), 0);
    }
}

}  // namespace
