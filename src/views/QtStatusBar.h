#pragma once

#include <memory>

#include "platform/StatusBar.h"

class QMenu;
class QSystemTrayIcon;

namespace platform::qt {

// The status item as an icon in the desktop's system tray. Its menu opens
// on either button.
class QtStatusItem final : public StatusItem, private StatusBarButton {
  public:
    QtStatusItem();
    ~QtStatusItem() override;
    QtStatusItem(const QtStatusItem&) = delete;
    QtStatusItem& operator=(const QtStatusItem&) = delete;

    StatusBarButton* button() override { return this; }
    void setMenu(std::shared_ptr<Menu> menu) override;
    std::shared_ptr<Menu> menu() const override { return menu_; }

    QSystemTrayIcon& trayIcon() const { return *trayIcon_; }
    // The Qt menu that follows the program's menu; null before setMenu.
    QMenu* qtMenu() const { return qtMenu_.get(); }

  private:
    void setImage(const Image& image) override;

    std::unique_ptr<QSystemTrayIcon> trayIcon_;
    std::unique_ptr<QMenu> qtMenu_;
    std::shared_ptr<Menu> menu_;
};

class QtStatusBar final : public StatusBar {
  public:
    // The tray has no lengths: every item is one icon wide.
    std::shared_ptr<StatusItem> statusItemWithLength(double length) override;
};

}  // namespace platform::qt
