#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Event.h"
#include "platform/Image.h"

namespace platform {

class Menu;

// One entry of a menu. Menus are plain objects that the core builds; the
// toolkit draws them.
class MenuItem : public std::enable_shared_from_this<MenuItem> {
  public:
    using Action = std::function<void()>;

    static std::shared_ptr<MenuItem> make(std::string title, std::string keyEquivalent = {},
                                          Action action = {});
    static std::shared_ptr<MenuItem> separatorItem();

    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }
    // The key that triggers the item together with the modifier mask; a
    // capital letter stands for the key with Shift.
    const std::string& keyEquivalent() const { return keyEquivalent_; }
    void setKeyEquivalent(std::string key) { keyEquivalent_ = std::move(key); }
    ModifierFlags keyEquivalentModifierMask() const { return keyEquivalentModifierMask_; }
    void setKeyEquivalentModifierMask(ModifierFlags mask) { keyEquivalentModifierMask_ = mask; }

    bool isSeparatorItem() const { return isSeparator_; }
    const std::optional<Image>& image() const { return image_; }
    void setImage(std::optional<Image> image) { image_ = std::move(image); }

    const Action& action() const { return action_; }
    void setAction(Action action) { action_ = std::move(action); }
    // Runs the action, as a click on the item does.
    void performAction() const {
        if (action_)
            action_();
    }

    const std::shared_ptr<Menu>& submenu() const { return submenu_; }
    void setSubmenu(std::shared_ptr<Menu> submenu);

    // The menu that holds this item, and the item whose submenu that is.
    std::shared_ptr<Menu> menu() const { return menu_.lock(); }
    std::shared_ptr<MenuItem> parentItem() const;

  private:
    friend class Menu;
    std::string title_;
    std::string keyEquivalent_;
    ModifierFlags keyEquivalentModifierMask_ = modifier::command;
    bool isSeparator_ = false;
    std::optional<Image> image_;
    Action action_;
    std::shared_ptr<Menu> submenu_;
    std::weak_ptr<Menu> menu_;
};

class Menu : public std::enable_shared_from_this<Menu> {
  public:
    static std::shared_ptr<Menu> make(std::string title = {});

    const std::string& title() const { return title_; }
    const std::vector<std::shared_ptr<MenuItem>>& itemArray() const { return items_; }
    void addItem(const std::shared_ptr<MenuItem>& item);
    void removeAllItems();

    std::shared_ptr<MenuItem> parentItem() const { return parentItem_.lock(); }

  private:
    friend class MenuItem;
    std::string title_;
    std::vector<std::shared_ptr<MenuItem>> items_;
    std::weak_ptr<MenuItem> parentItem_;
};

}  // namespace platform
