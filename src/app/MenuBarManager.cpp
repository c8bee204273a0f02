#include "app/MenuBarManager.h"

namespace tarnwick {

void MenuBarManager::setUp() {
    if (auto* button = menuItem_->button()) {
        button->setImage(platform::Image::resource("StatusBarIcon"));
    }
    auto menu = platform::Menu::make();
    using platform::MenuItem;
    menu->addItem(MenuItem::make("About", "", [this] { aboutMenuItemPressed(); }));
    menu->addItem(
        MenuItem::make("Check for Updates...", "", [this] { checkForUpdatesMenuItemPressed(); }));
    menu->addItem(MenuItem::make("Settings", ",", [this] { settingsMenuItemPressed(); }));
    menu->addItem(MenuItem::separatorItem());
    menu->addItem(MenuItem::make("Quit", "q", [this] { quitMenuItemPressed(); }));
    menuItem_->setMenu(std::move(menu));
}

}  // namespace tarnwick
