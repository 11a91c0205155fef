#include "end_to_end/qt_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimer>

void QtLoop::RunPass(std::chrono::milliseconds longest)
{
    QTimer end;
    end.start(longest);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

bool QtLoop::RunDuePass()
{
    return QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
}
