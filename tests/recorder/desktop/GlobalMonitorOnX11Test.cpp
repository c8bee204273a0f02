#include <gtest/gtest.h>

#include "RecorderDesktop.h"
#include "shortcuts/SRGlobalShortcutMonitor.h"
#include "shortcuts/SRShortcut.h"
#include "views/QtTestSupport.h"

namespace recordertest {
namespace {

using lirixkro::SRGlobalShortcutMonitor;
using lirixkro::SRShortcut;
using lirixkro::SRShortcutAction;

using GlobalMonitorOnX11 = RecorderDesktop;

// Control-Option-J on the shared monitor is a key grab on the server: the
// keys pressed through the test extension fire the action, not while the
// monitor is paused, and again after it resumes.
TEST_F(GlobalMonitorOnX11, AShortcutFiresWhenPressedNotWhilePausedAndAgainAfterResume) {
    auto& monitor = SRGlobalShortcutMonitor::sharedMonitor();
    int performed = 0;
    auto action = SRShortcutAction::shortcutActionWithShortcut(
        SRShortcut::shortcutWithCode(38, lirixkro::SRControlFlag | lirixkro::SROptionFlag),
        [&](SRShortcutAction&) {
            ++performed;
            return true;
        });
    monitor.addAction(action, platform::EventType::keyDown);
    ASSERT_EQ(monitor.state(), SRGlobalShortcutMonitor::State::active);

    pressChord({xkey::leftControl, xkey::leftAlt}, xkey::j);
    EXPECT_TRUE(waitFor([&] { return performed == 1; }));

    monitor.pause();
    pressChord({xkey::leftControl, xkey::leftAlt}, xkey::j);
    viewtest::runQtFor(300);
    EXPECT_EQ(performed, 1) << "paused";

    monitor.resume();
    pressChord({xkey::leftControl, xkey::leftAlt}, xkey::j);
    EXPECT_TRUE(waitFor([&] { return performed == 2; }));
    pressChord({xkey::leftControl}, xkey::j);
    viewtest::runQtFor(200);
    EXPECT_EQ(performed, 2) << "Control-J alone is no hot key";

    monitor.removeAction(action);
    EXPECT_EQ(monitor.state(), SRGlobalShortcutMonitor::State::idle);
}

}  // namespace
}  // namespace recordertest
