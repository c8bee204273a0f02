// What a person with a screen reader meets on a real desktop: the status
// item's icon in a tray host, whose menu names its commands, and the panel,
// whose menu, rows and round buttons have names and roles.
#include <gtest/gtest.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "RunningProgram.h"

namespace {

using e2e::AccessibleNode;
using e2e::eventually;

// The panel at the bottom of the screen whose tray takes in status items.
class TrayHost {
  public:
    TrayHost() : connection_(xcb_connect(nullptr, nullptr)) {
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    }
    ~TrayHost() { xcb_disconnect(connection_); }

    // Where the icon of the program of that window class sits inside the
    // tray host's window, in root coordinates.
    std::optional<e2e::Geometry> iconOf(const std::string& windowClass) {
        auto icon = windowOfClass(root_, windowClass, false);
        return icon ? std::optional{geometry(*icon)} : std::nullopt;
    }

    void click(int x, int y) {
        const auto at = [&](uint8_t type, uint8_t detail) {
            xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, root_,
                                static_cast<int16_t>(x), static_cast<int16_t>(y), 0);
        };
        at(XCB_MOTION_NOTIFY, 0);
        at(XCB_BUTTON_PRESS, 1);
        at(XCB_BUTTON_RELEASE, 1);
        xcb_flush(connection_);
    }

  private:
    // The first window of the class below the window, searched only inside
    // the tray host once one was passed.
    std::optional<xcb_window_t> windowOfClass(xcb_window_t window, const std::string& name,
                                              bool insideHost) {
        for (auto child : children(window)) {
            const auto childClass = className(child);
            if (insideHost && childClass == name)
                return child;
            if (auto found = windowOfClass(child, name, insideHost || childClass == "tint2"))
                return found;
        }
        return std::nullopt;
    }

    std::vector<xcb_window_t> children(xcb_window_t window) {
        auto tree = xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr);
        std::vector<xcb_window_t> result;
        if (tree) {
            const auto* first = xcb_query_tree_children(tree);
            result.assign(first, first + xcb_query_tree_children_length(tree));
        }
        std::free(tree);
        return result;
    }

    // The instance name of WM_CLASS, the first of its two strings.
    std::string className(xcb_window_t window) {
        auto reply = xcb_get_property_reply(
            connection_,
            xcb_get_property(connection_, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 64),
            nullptr);
        std::string name;
        if (reply) {
            name.assign(static_cast<const char*>(xcb_get_property_value(reply)),
                        static_cast<std::size_t>(xcb_get_property_value_length(reply)));
        }
        std::free(reply);
        return name.substr(0, name.find('\0'));
    }

    e2e::Geometry geometry(xcb_window_t window) {
        e2e::Geometry result;
        auto size =
            xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr);
        auto origin = xcb_translate_coordinates_reply(
            connection_, xcb_translate_coordinates(connection_, window, root_, 0, 0), nullptr);
        if (size && origin)
            result = {origin->dst_x, origin->dst_y, size->width, size->height};
        std::free(size);
        std::free(origin);
        return result;
    }

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
};

std::vector<std::string> rolesAndNames(const AccessibleNode& menu) {
    std::vector<std::string> items;
    for (const auto& item : menu.children)
        items.push_back(item.role + " " + item.name);
    return items;
}

std::string describe(const AccessibleNode& tree) {
    std::string text;
    for (const auto* node : tree.flattened())
        text += "[" + node->role + "] " + node->name + "\n";
    return text;
}

class ScreenReaderOnDesktopTest : public ::testing::Test {
  protected:
    void SetUp() override {
        // The tray host writes its first configuration there.
        std::filesystem::create_directories(std::getenv("XDG_CONFIG_HOME"));
    }

    e2e::PrivateFolders folders;
    e2e::AccessibilityBus& bus = e2e::AccessibilityBus::shared();
};

}  // namespace

TEST_F(ScreenReaderOnDesktopTest, TheTrayShowsOurIconWhoseMenuOffersTheFiveItemsAndQuits) {
    ASSERT_TRUE(bus.isUp());
    // Programs learn who listens as they start.
    bus.watchMenus();
    e2e::RunningProgram tint2("/usr/bin/tint2", {});
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();

    TrayHost tray;
    std::optional<e2e::Geometry> icon;
    ASSERT_TRUE(eventually([&] { return (icon = tray.iconOf("tarnwick")).has_value(); }, 10))
        << "no icon of ours in the tray";
    EXPECT_GT(icon->width, 8);
    EXPECT_GT(icon->height, 8);

    // An icon only just taken in may not answer the first click yet.
    std::optional<AccessibleNode> menu;
    for (int click = 0; click < 3 && !menu; ++click) {
        tray.click(icon->x + icon->width / 2, icon->y + icon->height / 2);
        menu = bus.waitForMenu(2);
    }
    ASSERT_TRUE(menu) << "no menu showed";
    EXPECT_EQ(rolesAndNames(*menu),
              (std::vector<std::string>{"menu item About", "menu item Check for Updates...",
                                        "menu item Settings", "separator ", "menu item Quit"}));

    const auto* quit = menu->find("menu item", "Quit");
    ASSERT_TRUE(quit);
    tray.click(quit->x + quit->width / 2, quit->y + quit->height / 2);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}

TEST_F(ScreenReaderOnDesktopTest, ThePanelsMenuRowsAndButtonsHaveTheirNames) {
    ASSERT_TRUE(bus.isUp());
    e2e::RunningProgram fileManager("/usr/bin/pcmanfm", {"--new-win", "/usr"});
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();

    e2e::Desktop desktop;
    desktop.movePointer(640, 400);
    std::optional<AccessibleNode> tree;
    // The file manager's window may come after the program's start.
    ASSERT_TRUE(eventually(
        [&] {
            desktop.pressChord();
            tree = bus.application("Tarnwick", 1);
            return tree && tree->find("push button", "usr");
        },
        15))
        << "the panel never listed the file manager's window: " << (tree ? describe(*tree) : "");

    const auto* row = tree->find("push button", "usr");
    std::vector<std::string> buttons;
    for (const auto& child : row->children) {
        if (child.role == "push button")
            buttons.push_back(child.name);
    }
    EXPECT_EQ(buttons, (std::vector<std::string>{"Close", "Minimize", "Full Screen"}));
    // The menu of applications names the one shown.
    EXPECT_TRUE(tree->find("push button", "File Manager PCManFM"));

    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}
