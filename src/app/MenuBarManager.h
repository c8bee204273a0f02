#pragma once

#include <memory>

#include "platform/StatusBar.h"

namespace tarnwick {

// The status item: its icon, its menu and the commands behind it. It holds
// no state of its own.
class MenuBarManager {
  public:
    // What the menu's commands ask of the root coordinator.
    class Coordinator {
      public:
        virtual ~Coordinator() = default;
        virtual void showAbout() = 0;
        virtual void checkForUpdates() = 0;
        virtual void showSettings() = 0;
        virtual void quit() = 0;
    };

    MenuBarManager(std::shared_ptr<platform::StatusItem> menuItem, Coordinator& coordinator)
        : menuItem_(std::move(menuItem)), coordinator_(coordinator) {}

    // Gives the item its icon and builds its menu; called once.
    void setUp();

    void aboutMenuItemPressed() { coordinator_.showAbout(); }
    void checkForUpdatesMenuItemPressed() { coordinator_.checkForUpdates(); }
    void settingsMenuItemPressed() { coordinator_.showSettings(); }
    void quitMenuItemPressed() { coordinator_.quit(); }

    const std::shared_ptr<platform::StatusItem>& menuItem() const { return menuItem_; }

  private:
    std::shared_ptr<platform::StatusItem> menuItem_;
    Coordinator& coordinator_;
};

}  // namespace tarnwick
