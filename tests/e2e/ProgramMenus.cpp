#include "ProgramMenus.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <thread>

namespace e2e {

void chooseFromStatusMenu(Desktop& desktop, pid_t program, int item) {
    // The tray host lays its icons out for a moment after taking ours in.
    std::optional<Geometry> icon;
    ASSERT_TRUE(eventually(
        [&] {
            const auto before = desktop.trayIconOf("tarnwick");
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            icon = desktop.trayIconOf("tarnwick");
            return before && icon && before->x == icon->x && before->y == icon->y &&
                   before->width == icon->width;
        },
        20))
        << "no icon of ours in the tray";
    bool open = false;
    for (int click = 0; click < 3 && !open; ++click) {
        desktop.click(icon->centre());
        // A busy machine may take a while to show it; a second click too
        // early would close it again.
        open = eventually([&] { return !desktop.popupsOf(program).empty(); }, 6);
    }
    ASSERT_TRUE(open) << "no menu showed";
    // Keys pressed before the menu holds the keyboard would go elsewhere.
    ASSERT_TRUE(eventually([&] { return desktop.keyboardIsGrabbed(); }));
    for (int step = 0; step < item; ++step)
        desktop.tap(downKey);
    desktop.tap(returnKey);
    ASSERT_TRUE(eventually([&] { return desktop.popupsOf(program).empty(); }));
}

void openPanelMenuAt(Desktop& desktop, pid_t program, const PanelMap& map, int entry) {
    // When a window of ours has the keyboard, the toolkit hands it the
    // chord's own key presses a moment after the panel is up; a menu opened
    // before they come closes at the Alt press, as menus do. A person clicks
    // a panel they have seen drawn, well after that.
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    desktop.click(map.menuButton());
    ASSERT_TRUE(eventually([&] { return desktop.popupsOf(program).size() == 1; }))
        << desktop.popupsOf(program).size() << " menus; panel "
        << desktop.panelClient(program).has_value();
    ASSERT_TRUE(eventually([&] { return desktop.keyboardIsGrabbed(); }));
    for (int step = 0; step <= entry; ++step)
        desktop.tap(downKey);
}

void chooseFromPanelSubmenu(Desktop& desktop, pid_t program, int item) {
    desktop.tap(rightKey);
    ASSERT_TRUE(eventually([&] { return desktop.popupsOf(program).size() == 2; }));
    for (int step = 0; step < item; ++step)
        desktop.tap(downKey);
    desktop.tap(returnKey);
    ASSERT_TRUE(eventually([&] { return desktop.popupsOf(program).empty(); }));
}

}  // namespace e2e
