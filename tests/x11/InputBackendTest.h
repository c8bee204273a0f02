#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11InputEventSource.h"
#include "platform/x11/X11KeyboardLayouts.h"
#include "platform/x11/X11RawInput.h"
#include "x11/InputTestDisplay.h"

namespace x11test {

// The input backend on a private X server, with a simulated main loop that
// watches the real connection, and a second client that presses keys.
class InputBackendTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(display.started()) << "Xvfb did not start";
        ASSERT_TRUE(display.setLayouts("us"));
        auto connection = platform::x11::X11Connection::open(display.name().c_str());
        ASSERT_TRUE(connection);
        source = std::make_unique<platform::x11::X11InputEventSource>(std::move(connection), loop);
        layouts = platform::x11::X11KeyboardLayouts::create(*source);
        ASSERT_TRUE(layouts);
        input = std::make_unique<FakeInput>(display.name());
    }

    void TearDown() override {
        if (display.started())
            display.setLayouts("us");
    }

    // Runs the loop until the condition holds or a few seconds have passed.
    bool waitFor(const std::function<bool()>& condition) { return loop.runUntil(condition, 5.0); }

    InputTestDisplay display;
    platform::sim::SimMainLoop loop;
    std::unique_ptr<platform::x11::X11InputEventSource> source;
    std::unique_ptr<platform::x11::X11KeyboardLayouts> layouts;
    std::unique_ptr<FakeInput> input;
};

}  // namespace x11test
