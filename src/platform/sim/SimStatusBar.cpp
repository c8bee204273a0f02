#include "platform/sim/SimStatusBar.h"

namespace platform::sim {

SimStatusItem::SimStatusItem(double length, bool hasButton)
    : length_(length), button_(hasButton ? std::make_unique<SimStatusBarButton>() : nullptr) {}

std::shared_ptr<StatusItem> SimStatusBar::statusItemWithLength(double length) {
    auto item = std::make_shared<SimStatusItem>(length, givesButtons_);
    items_.push_back(item);
    return item;
}

}  // namespace platform::sim
