#include <QApplication>
#include <QProcess>
#include <QWidget>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "replay/percentile.h"
#include "window/trellivan.h"

/// From the start of a process until its window has painted: the program, with the sample database beside it, next
/// to an empty window.
namespace {

using Clock = std::chrono::steady_clock;

/// Ends the event loop when a window has painted for the first time.
class FirstPaint : public QObject {
public:
    explicit FirstPaint(QWidget& window) { window.installEventFilter(this); }

protected:
    bool eventFilter(QObject* /*window*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        return false;
    }
};

void ReportFirstPaint()
{
    QApplication::exec();
    std::printf("%lld\n", static_cast<long long>(Clock::now().time_since_epoch().count()));
}

int ShowEmptyWindow(int argumentCount, char** arguments)
{
    const QApplication application(argumentCount, arguments);
    QWidget window;
    const FirstPaint paint(window);
    window.show();
    ReportFirstPaint();
    return 0;
}

int ShowProgram(int argumentCount, char** arguments)
{
    const QApplication application(argumentCount, arguments);
    Trellivan trellivan(QCoreApplication::applicationDirPath().toStdString(), QLocale::system());
    const FirstPaint paint(trellivan.Window());
    trellivan.Start();
    ReportFirstPaint();
    return 0;
}

double MillisecondsToShow(const char* executable, const char* kind)
{
    const auto begin = Clock::now();
    QProcess child;
    child.start(QString::fromLocal8Bit(executable), {QString::fromLatin1(kind)});
    child.waitForFinished();
    const Clock::time_point shown{Clock::duration(child.readAllStandardOutput().trimmed().toLongLong())};
    return std::chrono::duration<double, std::milli>(shown - begin).count();
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    constexpr int kStarts = 50;
    const std::string kind = argumentCount > 1 ? arguments[1] : "";
    if (kind == "empty")
        return ShowEmptyWindow(argumentCount, arguments);
    if (kind == "program")
        return ShowProgram(argumentCount, arguments);
    std::vector<double> empty;
    std::vector<double> program;
    for (int i = 0; i < kStarts; ++i) {
        empty.push_back(MillisecondsToShow(arguments[0], "empty"));
        program.push_back(MillisecondsToShow(arguments[0], "program"));
    }
    for (const auto& [name, times] : {std::pair("empty window", empty), std::pair("Trellivan", program)})
        std::printf("%-12s  median %.1f ms  p90 %.1f ms\n", name, bench::Percentile(times, 0.5),
                    bench::Percentile(times, 0.9));
    return 0;
}
