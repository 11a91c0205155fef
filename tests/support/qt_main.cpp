#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

/// For tests with windows. Their home folder is one of their own.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
