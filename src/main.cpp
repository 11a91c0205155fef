#include <QApplication>
#include <cstdio>
#include <exception>

#include "trellivan.h"

int main(int argumentCount, char** arguments)
{
    const QApplication application(argumentCount, arguments);
    try {
        Trellivan trellivan(QCoreApplication::applicationDirPath().toStdString(), QLocale::system());
        trellivan.Start();
        return QApplication::exec();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "Trellivan cannot start: %s\n", failure.what());
        return 1;
    }
}
