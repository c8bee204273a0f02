#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "RecorderDesktop.h"

namespace recordertest {

namespace {
std::string displayName;
std::unique_ptr<x11test::InputTestDisplay> display;
}  // namespace

const std::string& suiteDisplay() {
    return displayName;
}

bool setSuiteLayouts(const std::string& layouts) {
    return display && display->setLayouts(layouts);
}

}  // namespace recordertest

// Qt draws on the suite's own X server. Listing the tests needs none.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    auto& display = recordertest::display;
    display = std::make_unique<x11test::InputTestDisplay>();
    if (!display->started() || !display->setLayouts("us")) {
        std::fprintf(stderr, "recorder desktop tests: Xvfb did not start\n");
        return 1;
    }
    recordertest::displayName = display->name();
    setenv("DISPLAY", recordertest::displayName.c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int status = RUN_ALL_TESTS();
    display.reset();
    return status;
}
