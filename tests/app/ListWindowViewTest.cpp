#include "app/ListWindowModelDesktop.h"
#include "app/RecordingRowCoordinator.h"
#include "listwindow/ListWindowView.h"

namespace tarnwick::testing {
namespace {

using Strings = std::vector<std::string>;
using Tree = ListWindowView::Tree;
using Content = ListWindowView::Content;
using MenuEntry = ListWindowView::MenuEntry;

class ListWindowViewTest : public ListWindowModelDesktop {
  protected:
    static Strings entryNames(const std::vector<MenuEntry>& entries) {
        Strings result;
        for (const auto& entry : entries)
            result.push_back(entry.name);
        return result;
    }
    static Strings commands(const MenuEntry& entry) {
        Strings result;
        for (const auto& item : entry.submenu)
            result.push_back(item.title);
        return result;
    }
    static const MenuEntry& entryNamed(const std::vector<MenuEntry>& entries,
                                       const std::string& name) {
        auto it = std::find_if(entries.begin(), entries.end(),
                               [&](const MenuEntry& entry) { return entry.name == name; });
        if (it == entries.end())
            throw std::logic_error("no entry " + name);
        return *it;
    }
    static void run(const MenuEntry& entry, const std::string& command) {
        for (const auto& item : entry.submenu) {
            if (item.title == command)
                return item.action();
        }
        throw std::logic_error("no command " + command);
    }

    RecordingRowCoordinator coordinator;
    ListWindowView view{*model, coordinator};
};

TEST_F(ListWindowViewTest, WithoutFavoritesTheMenuBeginsWithTheDividerAFavoriteOffersUnfavorite) {
    auto content = view.content();
    EXPECT_EQ(content.tree, Tree::menuAndList);
    EXPECT_EQ(content.menu.label, "Finder");
    EXPECT_TRUE(content.menu.favorites.empty());
    EXPECT_EQ(entryNames(content.menu.tracked),
              (Strings{"Finder", "Notes", "Preview", "Tarnwick", "TextEdit"}));
    const auto entry = entryNamed(content.menu.tracked, "Preview");
    EXPECT_EQ(commands(entry), (Strings{"Favorite", "Hide"}));
    EXPECT_EQ(entry.icon, *preview->icon());
    EXPECT_EQ(entry.application, preview);

    // A favourite offers only "Unfavorite".
    run(entry, "Favorite");
    content = view.content();
    EXPECT_EQ(entryNames(content.menu.favorites), (Strings{"Preview"}));
    EXPECT_EQ(commands(content.menu.favorites.front()), (Strings{"Unfavorite"}));
    EXPECT_EQ(defaults().getValue(favoriteApps), std::set<std::string>{"com.example.Preview"});

    run(content.menu.favorites.front(), "Unfavorite");
    content = view.content();
    EXPECT_TRUE(content.menu.favorites.empty());
    EXPECT_EQ(commands(entryNamed(content.menu.tracked, "Preview")), (Strings{"Favorite", "Hide"}));
}

TEST_F(ListWindowViewTest, HidingTheSelectedAppKeepsItSelectedAndListed) {
    entryNamed(view.content().menu.tracked, "TextEdit").select();
    ASSERT_EQ(view.content().menu.label, "TextEdit");
    int redraws = 0;
    const auto redrawing = view.changed().connect([&] { ++redraws; });

    run(entryNamed(view.content().menu.tracked, "TextEdit"), "Hide");
    const auto content = view.content();
    EXPECT_EQ(redraws, 1);
    EXPECT_EQ(content.menu.label, "TextEdit");
    EXPECT_EQ(content.rows.size(), 2u);
    EXPECT_EQ(entryNames(content.menu.tracked),
              (Strings{"Finder", "Notes", "Preview", "Tarnwick"}));
    EXPECT_TRUE(content.menu.favorites.empty());
}

TEST_F(ListWindowViewTest, RowsAreKeyedByWindowWithADividerUnderAllButTheLastOrTheEmptyText) {
    const auto content = view.content();
    ASSERT_EQ(content.rows.size(), 3u);
    EXPECT_FALSE(content.emptyText);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(content.rows[i].window, windowsState().windows[i]);
        EXPECT_EQ(content.rows[i].id, windowsState().windows[i]->id());
        EXPECT_EQ(content.rows[i].hasDivider, i < 2);
    }

    entryNamed(view.content().menu.tracked, "Notes").select();
    const auto empty = view.content();
    EXPECT_EQ(empty.emptyText, "Notes currently has no open windows.");
    EXPECT_TRUE(empty.rows.empty());
    EXPECT_EQ(empty.menu.label, "Notes");
}

TEST_F(ListWindowViewTest, ErrorsShowThePermissionViewOrTextWithoutAMenu) {
    desktop.accessibility().setProcessTrusted(false);
    model->refreshWindows();
    auto content = view.content();
    EXPECT_EQ(content.tree, Tree::permission);
    EXPECT_TRUE(content.menu.label.empty() && content.menu.tracked.empty());

    desktop.accessibility().setProcessTrusted(true);
    desktop.accessibility().injectFault(SimAXCall::copyAttributeValue,
                                        SimAXFault::error(platform::axError::cannotComplete),
                                        nullptr, "AXWindows");
    model->refreshWindows();
    content = view.content();
    EXPECT_EQ(content.tree, Tree::errorText);
    EXPECT_EQ(content.errorText,
              "The operation couldn\u2019t be completed. "
              "(tarnwick.InteractionController.Error error 0.)");
    EXPECT_TRUE(content.menu.label.empty() && content.menu.tracked.empty());
    EXPECT_TRUE(content.rows.empty());
    EXPECT_FALSE(content.emptyText);
}

}  // namespace
}  // namespace tarnwick::testing
