#pragma once

#include <vector>

#include "platform/Window.h"

namespace viewtest {

// Remembers each window it was told would close, and whether that window
// was still visible then.
struct RecordingWindowDelegate : platform::WindowDelegate {
    void windowWillClose(platform::Window* window) override {
        closed.push_back(window);
        wasVisibleWhenTold = window && window->isVisible();
    }
    std::vector<platform::Window*> closed;
    bool wasVisibleWhenTold = false;
};

}  // namespace viewtest
