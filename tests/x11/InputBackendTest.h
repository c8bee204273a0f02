#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11InputEventSource.h"
#include "platform/x11/X11KeyboardLayouts.h"
#include "platform/x11/X11RawInput.h"
#include "x11/InputTestDisplay.h"

namespace x11test {

// The input backend on a private X server, with a simulated main loop that
// watches the real connection, and a second client that presses keys.
class InputBackend {
  public:
    InputBackend() {
        if (!display.started()) {
            problem_ = "Xvfb did not start";
        } else if (!display.setLayouts("us")) {
            problem_ = "the keyboard layout could not be set";
        } else if (auto connection = platform::x11::X11Connection::open(display.name().c_str())) {
            source =
                std::make_unique<platform::x11::X11InputEventSource>(std::move(connection), loop);
            layouts = platform::x11::X11KeyboardLayouts::create(*source);
            input = std::make_unique<FakeInput>(display.name());
            if (!layouts)
                problem_ = "no keyboard layouts";
        } else {
            problem_ = "the display could not be opened";
        }
    }
    ~InputBackend() {
        if (display.started())
            display.setLayouts("us");
    }
    InputBackend(const InputBackend&) = delete;
    InputBackend& operator=(const InputBackend&) = delete;

    // Empty when everything is ready.
    const std::string& problem() const { return problem_; }

    // Runs the loop until the condition holds or a few seconds have passed.
    // The loop's clock moves on with the real one, so that the backend's
    // timers (the moving pointer's next sample) come due.
    bool waitFor(const std::function<bool()>& condition) {
        constexpr double step = 0.01;
        for (int steps = 0; steps < 500; ++steps) {
            if (loop.runUntil(condition, step))
                return true;
            loop.advance(step);
        }
        return condition();
    }

    InputTestDisplay display;
    platform::sim::SimMainLoop loop;
    std::unique_ptr<platform::x11::X11InputEventSource> source;
    std::unique_ptr<platform::x11::X11KeyboardLayouts> layouts;
    std::unique_ptr<FakeInput> input;

  private:
    std::string problem_;
};

class InputBackendTest : public ::testing::Test, protected InputBackend {
  protected:
    void SetUp() override { ASSERT_EQ(problem(), ""); }
};

}  // namespace x11test
