#include <QApplication>

#include "trellivan.h"

int main(int argumentCount, char** arguments)
{
    const QApplication application(argumentCount, arguments);
    Trellivan trellivan(QCoreApplication::applicationDirPath().toStdString(), QLocale::system());
    trellivan.Start();
    return QApplication::exec();
}
