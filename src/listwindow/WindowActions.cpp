#include "listwindow/WindowActions.h"

#include "listwindow/ListWindowViewModel.h"
#include "support/StandardOutput.h"

namespace tarnwick {

namespace {

using corvane::AXError;
using corvane::UIElement;
using Attribute = UIElement::Attribute;
using Action = UIElement::Action;

// Runs one accessibility step whose failure doesn't matter.
template <typename Step>
void ignoringFailure(Step step) {
    try {
        step();
    } catch (const AXError&) {
    }
}

}  // namespace

void WindowActions::raiseWindow(const WindowRef& window) const {
    if (!window)
        return;
    std::shared_ptr<corvane::Application> parent;
    ignoringFailure([&] { parent = window->getParent(); });
    if (parent)
        ignoringFailure(
            [&] { parent->setAttribute(Attribute::frontmost, platform::CFValue(true)); });
    ignoringFailure([&] { window->performAction(Action::raise); });
}

void WindowActions::closeWindow(const WindowRef& window) const {
    if (window) {
        if (auto button = window->closeButton())
            ignoringFailure([&] { button->performAction(Action::press); });
    }
    model_.refreshWindows();
}

void WindowActions::toggleMinimized(const WindowRef& window) const {
    if (window) {
        try {
            window->setAttribute(Attribute::minimized, platform::CFValue(!window->isMinimized()));
        } catch (const AXError& error) {
            quillbox::printLine("Error with minimizing: " + error.description());
        }
    }
    model_.refreshWindows();
}

void WindowActions::toggleFullScreen(const WindowRef& window) const {
    if (window) {
        try {
            if (window->isFullScreen()) {
                window->setAttribute(Attribute::fullScreen, platform::CFValue(false));
            } else if (auto button = window->zoomButton()) {
                button->performAction(Action::press);
            }
        } catch (const AXError& error) {
            quillbox::printLine("Something not supported: " + error.description());
        }
    }
    model_.refreshWindows();
}

}  // namespace tarnwick
