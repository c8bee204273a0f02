#include "platform/sim/SimWindow.h"

#include <sstream>

namespace platform::sim {

namespace {

std::string numberText(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

}  // namespace

// Panels hide when their application deactivates unless told otherwise;
// ordinary windows stay.
SimWindow::SimWindow(Kind kind, WindowStyleMask styleMask, std::shared_ptr<KeyFocus> focus)
    : kind_(kind),
      styleMask_(styleMask),
      hidesOnDeactivate_(kind == Kind::panel),
      focus_(std::move(focus)) {}

SimWindow::~SimWindow() {
    if (isKeyWindow())
        focus_->window = nullptr;
}

void SimWindow::setFrameOrigin(CGPoint origin) {
    frame_.origin = origin;
    calls_.push_back("setFrameOrigin " + numberText(origin.x) + " " + numberText(origin.y));
}

void SimWindow::setAlphaValue(double alpha) {
    alpha_ = alpha;
    calls_.push_back("setAlphaValue " + numberText(alpha));
}

void SimWindow::makeKeyAndOrderFront() {
    visible_ = true;
    focus_->window = this;
    calls_.push_back("makeKeyAndOrderFront");
}

void SimWindow::orderFront() {
    visible_ = true;
    calls_.push_back("orderFront");
}

void SimWindow::close() {
    if (!visible_)
        return;
    calls_.push_back("close");
    if (delegate_)
        delegate_->windowWillClose(this);
    visible_ = false;
    if (isKeyWindow())
        focus_->window = nullptr;
}

void SimWindow::setContentView(std::shared_ptr<ContentView> view) {
    contentView_ = std::move(view);
}

}  // namespace platform::sim
