#include <gtest/gtest.h>

#include "platform/Menu.h"

using platform::Menu;
using platform::MenuItem;

TEST(Menu, ItemsKnowTheItemWhoseSubmenuHoldsThem) {
    auto mainMenu = Menu::make();
    auto edit = MenuItem::make("Edit");
    auto editMenu = Menu::make("Edit");
    auto find = MenuItem::make("Find", "f");
    editMenu->addItem(find);
    edit->setSubmenu(editMenu);
    mainMenu->addItem(edit);

    EXPECT_EQ(find->parentItem(), edit);
    EXPECT_EQ(edit->parentItem(), nullptr);
    EXPECT_EQ(find->menu(), editMenu);
    EXPECT_TRUE(MenuItem::separatorItem()->isSeparatorItem());
}
