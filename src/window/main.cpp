#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>

#include "platform/posix/system_calls.h"
#include "platform/window/painting_thread.h"
#include "window/trellivan.h"

namespace {

/// The folder's bytes as the system has them: Qt gives no path that is not valid UTF-8.
std::string ExecutableDirectory()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    platform::IgnoreFatalWriteSignals();
    // The program takes no command line. Qt, which would take one, sees the program's name alone.
    argumentCount = std::min(argumentCount, 1);
    const QApplication application(argumentCount, arguments);
    try {
        platform::window::StartPaintingThread();
        Trellivan trellivan(ExecutableDirectory(), QLocale::system());
        trellivan.Start();
        return QApplication::exec();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "Trellivan cannot start: %s\n", failure.what());
        return 1;
    }
}
