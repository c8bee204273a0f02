#pragma once

#include <memory>

#include "platform/Image.h"
#include "platform/Menu.h"

namespace platform {

// The clickable part of a status item.
class StatusBarButton {
  public:
    virtual ~StatusBarButton() = default;
    virtual void setImage(const Image& image) = 0;
};

class StatusItem {
  public:
    virtual ~StatusItem() = default;
    // Null where the status bar gives the item no button.
    virtual StatusBarButton* button() = 0;
    virtual void setMenu(std::shared_ptr<Menu> menu) = 0;
    virtual std::shared_ptr<Menu> menu() const = 0;
};

inline constexpr double variableStatusItemLength = -1;

class StatusBar {
  public:
    virtual ~StatusBar() = default;
    virtual std::shared_ptr<StatusItem> statusItemWithLength(double length) = 0;
};

}  // namespace platform
