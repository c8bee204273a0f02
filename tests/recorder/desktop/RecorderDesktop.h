#pragma once

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <memory>
#include <string>

#include "platform/Platform.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11InputEventSource.h"
#include "platform/x11/X11KeyboardLayouts.h"
#include "views/QtMainLoop.h"
#include "x11/InputTestDisplay.h"

namespace recordertest {

// The display the whole suite runs on: a private X server, so that the keys
// it presses disturb no test beside it. Qt draws on it too.
const std::string& suiteDisplay();
// Loads keyboard layouts on the suite's display ("us", "de").
bool setSuiteLayouts(const std::string& layouts);

// X keycodes of the evdev keymap.
namespace xkey {
inline constexpr xcb_keycode_t escape = 9, backSpace = 22, j = 44, k = 45, a = 38, y = 29,
                               leftControl = 37, leftShift = 50, leftAlt = 64;
}

// The X11 backend's input side on the suite's display, driven by Qt's event
// loop, installed as the platform; and a second client that presses keys
// and clicks through the test extension.
class RecorderDesktop : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // Runs Qt's event loop until the condition holds, a few seconds at most.
    static bool waitFor(const std::function<bool()>& condition);
    void click(int rootX, int rootY);
    void pressChord(std::initializer_list<xcb_keycode_t> modifiers, xcb_keycode_t key = 0);
    // Bells the server rang since the test began, told by the keyboard
    // extension.
    int bellsRung();

    platform::qt::QtMainLoop loop;
    std::unique_ptr<platform::x11::X11InputEventSource> source;
    std::unique_ptr<platform::x11::X11KeyboardLayouts> layouts;
    std::unique_ptr<platform::x11::X11HotKeys> hotKeys;
    std::unique_ptr<platform::ScopedInstall> install;
    std::unique_ptr<x11test::FakeInput> input;

  private:
    xcb_connection_t* bellWatcher_ = nullptr;
    std::uint8_t xkbEventBase_ = 0;
    int bells_ = 0;
};

}  // namespace recordertest
