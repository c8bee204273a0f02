#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>

// The view tests draw nothing on a real screen: Qt's offscreen platform
// gives them a screen of their own.
int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
