#include "platform/Menu.h"

namespace platform {

std::shared_ptr<MenuItem> MenuItem::make(std::string title, std::string keyEquivalent,
                                         Action action) {
    auto item = std::make_shared<MenuItem>();
    item->title_ = std::move(title);
    item->keyEquivalent_ = std::move(keyEquivalent);
    item->action_ = std::move(action);
    return item;
}

std::shared_ptr<MenuItem> MenuItem::separatorItem() {
    auto item = std::make_shared<MenuItem>();
    item->isSeparator_ = true;
    item->keyEquivalentModifierMask_ = 0;
    return item;
}

void MenuItem::setSubmenu(std::shared_ptr<Menu> submenu) {
    if (submenu_)
        submenu_->parentItem_.reset();
    submenu_ = std::move(submenu);
    if (submenu_)
        submenu_->parentItem_ = weak_from_this();
}

std::shared_ptr<MenuItem> MenuItem::parentItem() const {
    auto holder = menu_.lock();
    return holder ? holder->parentItem() : nullptr;
}

std::shared_ptr<Menu> Menu::make(std::string title) {
    auto menu = std::make_shared<Menu>();
    menu->title_ = std::move(title);
    return menu;
}

void Menu::addItem(const std::shared_ptr<MenuItem>& item) {
    item->menu_ = weak_from_this();
    items_.push_back(item);
}

void Menu::removeAllItems() {
    for (auto& item : items_)
        item->menu_.reset();
    items_.clear();
}

}  // namespace platform
