#include "platform/sim/SimToolkit.h"

#include <algorithm>

namespace platform::sim {

std::shared_ptr<Window> SimToolkit::makePanel() {
    return make(SimWindow::Kind::panel, windowStyle::defaultMask);
}

std::shared_ptr<Window> SimToolkit::makeWindow(WindowStyleMask styleMask) {
    return make(SimWindow::Kind::window, styleMask);
}

std::shared_ptr<SimWindow> SimToolkit::make(SimWindow::Kind kind, WindowStyleMask styleMask) {
    std::erase_if(windows_, [](const auto& window) { return window.expired(); });
    auto window = std::make_shared<SimWindow>(kind, styleMask, focus_);
    windows_.push_back(window);
    return window;
}

std::vector<std::shared_ptr<SimWindow>> SimToolkit::windows() const {
    std::vector<std::shared_ptr<SimWindow>> alive;
    for (const auto& weak : windows_) {
        if (auto window = weak.lock())
            alive.push_back(std::move(window));
    }
    return alive;
}

std::vector<std::shared_ptr<SimWindow>> SimToolkit::visibleWindows() const {
    auto visible = windows();
    std::erase_if(visible, [](const auto& window) { return !window->isVisible(); });
    return visible;
}

std::shared_ptr<SimWindow> SimToolkit::keyWindow() const {
    auto all = windows();
    auto it = std::find_if(all.begin(), all.end(),
                           [](const auto& window) { return window->isKeyWindow(); });
    return it == all.end() ? nullptr : *it;
}

}  // namespace platform::sim
