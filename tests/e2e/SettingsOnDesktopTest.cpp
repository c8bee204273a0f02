// The Settings window of the real program on a real desktop, opened from
// the status menu and read as a screen reader reads it: a shortcut recorded
// with real keys works at once and the old one no longer does, a cleared
// one switches activation off; a hidden application comes back with
// "Unhide"; launch at login is an autostart entry that starts the program;
// the release channel lands in the preference file.
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "PanelMap.h"
#include "PreferenceFile.h"
#include "ProgramMenus.h"
#include "RunningProgram.h"
#include "platform/PropertyListCodec.h"
#include "platform/xdg/DesktopEntryExec.h"
#include "platform/xdg/DesktopEntryKeyFile.h"

namespace {

namespace fs = std::filesystem;
using e2e::AccessibleNode;
using e2e::contentsOf;
using e2e::eventually;
using e2e::Geometry;
using platform::PropertyList;

constexpr xcb_keycode_t kKey = 45, backSpaceKey = 22;
constexpr int settingsItem = 3;  // About, Check for Updates..., Settings
// The stored shortcut's key code and modifier flags.
struct StoredChord {
    std::uint64_t keyCode = 0;
    std::uint64_t modifierFlags = 0;
    friend bool operator==(const StoredChord&, const StoredChord&) = default;
};
constexpr StoredChord controlShiftK{40, 0x40000 | 0x20000};
constexpr StoredChord controlOptionShift{65535, 0x40000 | 0x80000 | 0x20000};

e2e::Point centreOf(const AccessibleNode& node) {
    return {node.x + node.width / 2, node.y + node.height / 2};
}

Geometry extentsOf(const AccessibleNode& node) {
    return {node.x, node.y, node.width, node.height};
}

// The place of the application's entry among the menu's entries.
int entryOf(const AccessibleNode& menu, const std::string& name) {
    int entry = 0;
    for (const auto& child : menu.children) {
        if (child.role != "menu item")
            continue;
        if (child.name == name)
            return entry;
        ++entry;
    }
    return -1;
}

// The standard output of a command line, run to its end.
std::string outputOf(const std::vector<std::string>& commandLine) {
    e2e::RunningProgram program(
        commandLine.front(), std::vector<std::string>(commandLine.begin() + 1, commandLine.end()));
    program.waitForExit(20);
    return program.standardOutput();
}

class SettingsOnDesktopTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(bus.isUp());
        // The tray host writes its first configuration there.
        fs::create_directories(std::getenv("XDG_CONFIG_HOME"));
        folders.markInstructionsSeen();
        desktop.movePointer(640, 400);
    }

    void TearDown() override {
        if (tarnwick) {
            tarnwick->sendSignal(SIGTERM);
            EXPECT_EQ(tarnwick->waitForExit(10), (e2e::ExitStatus{true, 0}));
        }
    }

    // After the first run the program brings its panel up as it starts:
    // the panel's window is noted, and taken away again.
    void startTarnwick() {
        tray = std::make_unique<e2e::RunningProgram>("/usr/bin/tint2", std::vector<std::string>{});
        tarnwick = std::make_unique<e2e::RunningProgram>(e2e::tarnwickExecutable(),
                                                         std::vector<std::string>{});
        ASSERT_TRUE(tarnwick->waitUntilHandling(SIGTERM, 20)) << tarnwick->standardError();
        std::optional<xcb_window_t> shown;
        ASSERT_TRUE(eventually([&] { return (shown = desktop.panelClient(pid())).has_value(); }));
        panel = *shown;
        desktop.tap(e2e::escapeKey);
        ASSERT_TRUE(panelIsGone());
    }

    pid_t pid() const { return tarnwick->pid(); }
    bool panelIsGone() {
        return eventually([&] { return !desktop.panelClient(pid()); });
    }

    // The program's window titled "Settings", once it holds the node.
    std::optional<AccessibleNode> settingsWith(const std::string& role, const std::string& name,
                                               double seconds = 15) {
        std::optional<AccessibleNode> found;
        eventually(
            [&] {
                const auto tree = bus.application("Tarnwick", 1, pid());
                for (const auto& window : tree ? tree->children : std::vector<AccessibleNode>{}) {
                    if (window.name == "Settings" && window.find(role, name))
                        found = window;
                }
                return found.has_value();
            },
            seconds);
        return found;
    }

    std::string outline() {
        return bus.application("Tarnwick", 1, pid()).value_or(AccessibleNode{}).outline();
    }

    // Clicks the node of the Settings window, once it is there.
    void press(const std::string& role, const std::string& name) {
        const auto window = settingsWith(role, name);
        ASSERT_TRUE(window) << "no " << role << " \"" << name << "\" in:\n" << outline();
        desktop.click(centreOf(*window->find(role, name)));
    }

    std::vector<xcb_window_t> settingsWindows() {
        std::vector<xcb_window_t> found;
        for (const auto& client : desktop.clientWindowsOf(pid())) {
            if (client.title == "Settings")
                found.push_back(client.id);
        }
        return found;
    }

    PropertyList::Dictionary preferences() {
        return e2e::readPreferenceFile(folders.preferenceFile());
    }

    // The activation shortcut in the preference file; nothing without one.
    std::optional<StoredChord> storedChord() {
        const auto all = preferences();
        const auto entry = all.find("activationShortcut");
        const auto* data = entry == all.end() ? nullptr : entry->second.get<PropertyList::Data>();
        const auto decoded = data ? platform::PropertyListCodec::decode(*data) : std::nullopt;
        const auto* fields = decoded ? decoded->dictionary() : nullptr;
        if (!fields || !fields->count("keyCode") || !fields->count("modifierFlags"))
            return std::nullopt;
        return StoredChord{fields->at("keyCode").unsignedInteger().value_or(0),
                           fields->at("modifierFlags").unsignedInteger().value_or(0)};
    }

    // Records the keys in the Settings window's recorder, found by the label
    // it shows. A screen reader's press begins the recording, and has when
    // it returns; a click would reach the program only after the window
    // manager let it through, and keys typed at once could come first. The
    // keys end the recording.
    void record(const std::string& label, const std::vector<xcb_keycode_t>& modifiers,
                std::optional<xcb_keycode_t> key) {
        ASSERT_TRUE(settingsWith("push button", label)) << outline();
        ASSERT_TRUE(bus.doAction("Tarnwick", pid(), "push button", label, "Press"));
        for (const auto modifier : modifiers)
            desktop.key(modifier, true);
        if (key)
            desktop.tap(*key);
        for (auto it = modifiers.rbegin(); it != modifiers.rend(); ++it)
            desktop.key(*it, false);
    }

    // Presses the keys with the pointer at a place, and tells whether the
    // panel came up centred there.
    bool chordShowsPanelAt(e2e::Point pointer, const std::function<void()>& pressKeys) {
        desktop.movePointer(pointer.x, pointer.y);
        pressKeys();
        std::optional<Geometry> shown;
        const bool came = eventually(
            [&] {
                shown = desktop.shownPanel(pid());
                return shown && std::abs(shown->centre().x - pointer.x) <= 2 &&
                       std::abs(shown->centre().y - pointer.y) <= 2;
            },
            10);
        return came;
    }

    void pressControlShiftK() {
        desktop.key(e2e::controlKey, true);
        desktop.key(e2e::shiftKey, true);
        desktop.tap(kKey);
        desktop.key(e2e::shiftKey, false);
        desktop.key(e2e::controlKey, false);
    }

    e2e::AccessibilityBus& bus = e2e::AccessibilityBus::shared();
    e2e::PrivateFolders folders;
    e2e::Desktop desktop;
    std::unique_ptr<e2e::RunningProgram> tray;
    std::unique_ptr<e2e::RunningProgram> tarnwick;
    xcb_window_t panel = XCB_NONE;
};

}  // namespace

TEST_F(SettingsOnDesktopTest, ARecordedShortcutWorksAtOnceAClearedOneNoneAndModifiersAloneAgain) {
    ASSERT_NO_FATAL_FAILURE(startTarnwick());
    ASSERT_NO_FATAL_FAILURE(e2e::chooseFromStatusMenu(desktop, pid(), settingsItem));
    auto window = settingsWith("push button", "⌃⌥⇧");
    ASSERT_TRUE(window) << outline() << tarnwick->standardOutput();
    EXPECT_TRUE(window->find("check box", "Launch at Login")) << outline();
    EXPECT_TRUE(window->find("label", "Activation Shortcut"));
    EXPECT_TRUE(window->find("page tab", "General"));
    EXPECT_TRUE(window->find("page tab", "Updates"));
    ASSERT_EQ(settingsWindows().size(), 1u);
    const auto shown = settingsWindows().front();
    // While it is open the program is an ordinary application, in the
    // taskbar and the window switcher.
    EXPECT_TRUE(eventually([&] { return desktop.activeWindow() == shown; }));
    EXPECT_FALSE(desktop.hasState(shown, "_NET_WM_STATE_SKIP_TASKBAR"));

    // A second "Settings" raises the same window over another one.
    e2e::RunningProgram terminal("/usr/bin/xterm", {"-T", "A terminal"});
    ASSERT_TRUE(eventually([&] { return !desktop.clientWindowsOf(terminal.pid()).empty(); }, 10));
    ASSERT_TRUE(desktop.activateWindowOf(terminal.pid()));
    ASSERT_TRUE(eventually([&] { return desktop.activeProcess() == terminal.pid(); }));
    ASSERT_NO_FATAL_FAILURE(e2e::chooseFromStatusMenu(desktop, pid(), settingsItem));
    EXPECT_TRUE(eventually([&] { return desktop.activeWindow() == shown; }));
    EXPECT_EQ(settingsWindows(), std::vector<xcb_window_t>{shown});

    ASSERT_NO_FATAL_FAILURE(record("⌃⌥⇧", {e2e::controlKey, e2e::shiftKey}, kKey));
    ASSERT_TRUE(eventually([&] { return storedChord() == controlShiftK; }))
        << "the preference file doesn't hold Control+Shift+K";
    EXPECT_TRUE(settingsWith("push button", "⌃⇧K"));
    // The old chord, then Escape, then the new one: the panel is mapped once,
    // by the new chord, so the old one did nothing.
    desktop.watchMapping(panel);
    EXPECT_TRUE(chordShowsPanelAt({900, 600}, [&] {
        desktop.pressChord();
        desktop.tap(e2e::escapeKey);
        pressControlShiftK();
    })) << "Control+Shift+K didn't bring the panel to the pointer";
    // The server sent every mapping before it answered that the panel is
    // shown: all of them are here to be counted.
    EXPECT_TRUE(desktop.waitForMapping(panel, true, 1));
    EXPECT_FALSE(desktop.waitForMapping(panel, true, 0.3)) << "the old chord brought it up too";
    desktop.tap(e2e::escapeKey);
    ASSERT_TRUE(panelIsGone());

    // Delete in the recorder clears it, in the window and in the file.
    ASSERT_NO_FATAL_FAILURE(record("⌃⇧K", {}, backSpaceKey));
    ASSERT_TRUE(eventually([&] { return !preferences().count("activationShortcut"); }))
        << "the key is still in the file";
    EXPECT_TRUE(settingsWith("push button", "Record Shortcut")) << outline();
    desktop.movePointer(900, 600);
    pressControlShiftK();
    desktop.pressChord();
    EXPECT_FALSE(eventually([&] { return desktop.panelClient(pid()).has_value(); }, 2))
        << "a chord brought the panel up without a shortcut";

    // A chord of modifiers alone, recorded again, works.
    ASSERT_NO_FATAL_FAILURE(
        record("Record Shortcut", {e2e::controlKey, e2e::altKey, e2e::shiftKey}, std::nullopt));
    ASSERT_TRUE(eventually([&] { return storedChord() == controlOptionShift; }));
    EXPECT_TRUE(settingsWith("push button", "⌃⌥⇧"));
    EXPECT_TRUE(chordShowsPanelAt({300, 650}, [&] { desktop.pressChord(); }));
}

TEST_F(SettingsOnDesktopTest, AHiddenAppComesBackAndLaunchAtLoginAndTheChannelAreStored) {
    e2e::RunningProgram terminal("/usr/bin/xterm", {"-T", "A terminal"});
    ASSERT_TRUE(eventually([&] { return !desktop.clientWindowsOf(terminal.pid()).empty(); }, 10));
    ASSERT_NO_FATAL_FAILURE(startTarnwick());

    // Hide the terminal from the panel's menu: its entry is the second.
    ASSERT_TRUE(chordShowsPanelAt({640, 400}, [&] { desktop.pressChord(); }));
    const auto content = desktop.panelContent(pid());
    ASSERT_TRUE(content);
    const e2e::PanelMap map(*content);
    bus.watchMenus();
    ASSERT_NO_FATAL_FAILURE(e2e::openPanelMenuAt(desktop, pid(), map, 0));
    const auto fullMenu = desktop.popupsOf(pid()).front();
    const auto menu = bus.waitForMenu();
    ASSERT_TRUE(menu);
    const int terminalEntry = entryOf(*menu, "XTerm");
    ASSERT_GE(terminalEntry, 0) << menu->outline();
    for (int step = 0; step < terminalEntry; ++step)
        desktop.tap(e2e::downKey);
    ASSERT_NO_FATAL_FAILURE(e2e::chooseFromPanelSubmenu(desktop, pid(), 1));  // "Hide"
    ASSERT_TRUE(eventually([&] {
        return e2e::stringsUnder(preferences(), "harrowmere.hiddenApps") ==
               std::vector<std::string>{"debian-xterm"};
    })) <<
        [&] {
            std::string all;
            for (const auto& id : e2e::stringsUnder(preferences(), "harrowmere.hiddenApps"))
                all += id + " ";
            return all + tarnwick->standardOutput() + tarnwick->standardError();
        }();
    desktop.tap(e2e::escapeKey);
    ASSERT_TRUE(panelIsGone());

    // In Settings, under Hidden Apps, with its icon and name, and Unhide.
    ASSERT_NO_FATAL_FAILURE(e2e::chooseFromStatusMenu(desktop, pid(), settingsItem));
    ASSERT_NO_FATAL_FAILURE(press("push button", "Hidden Apps"));
    const auto window = settingsWith("push button", "Unhide");
    ASSERT_TRUE(window) << outline();
    const auto* name = window->find("label", "XTerm");
    ASSERT_TRUE(name) << outline();
    bool hasIcon = false;
    for (const auto* node : window->flattened()) {
        hasIcon |= node->role == "image" && node->width == 16 && node->height == 16 &&
                   node->x < name->x && std::abs(node->y - name->y) < 16;
    }
    EXPECT_TRUE(hasIcon) << "no icon beside the name";
    EXPECT_TRUE(e2e::saveScreenshot(extentsOf(*window),
                                    TARNWICK_ARTIFACTS_DIR "/settings-general-desktop.png"));
    ASSERT_NO_FATAL_FAILURE(press("push button", "Unhide"));
    ASSERT_TRUE(eventually(
        [&] { return e2e::stringsUnder(preferences(), "harrowmere.hiddenApps").empty(); }));
    EXPECT_TRUE(eventually([&] { return !settingsWith("push button", "Unhide", 0.2); }))
        << "the row stayed";

    // Back in the panel's menu once the panel reads the applications again,
    // as it does when one is picked: its menu is a snapshot of the last
    // reading.
    ASSERT_TRUE(chordShowsPanelAt({640, 400}, [&] { desktop.pressChord(); }));
    ASSERT_NO_FATAL_FAILURE(e2e::openPanelMenuAt(desktop, pid(), map, 0));
    desktop.tap(e2e::returnKey);
    ASSERT_TRUE(eventually([&] { return desktop.popupsOf(pid()).empty(); }));
    // The file manager's list has another height: the panel is shown anew.
    desktop.tap(e2e::escapeKey);
    ASSERT_TRUE(panelIsGone());
    ASSERT_TRUE(chordShowsPanelAt({640, 400}, [&] { desktop.pressChord(); }));
    const auto refreshed = desktop.panelContent(pid());
    ASSERT_TRUE(refreshed);
    ASSERT_NO_FATAL_FAILURE(e2e::openPanelMenuAt(desktop, pid(), e2e::PanelMap(*refreshed), 0));
    ASSERT_EQ(desktop.popupsOf(pid()).size(), 1u);
    EXPECT_EQ(desktop.popupsOf(pid()).front().height, fullMenu.height) << "the terminal is missing";
    desktop.tap(e2e::escapeKey);
    desktop.tap(e2e::escapeKey);
    ASSERT_TRUE(panelIsGone());

    // Launch at login: an autostart entry that starts this program, then none.
    const fs::path entry =
        fs::path(std::getenv("XDG_CONFIG_HOME")) / "autostart/harrowmere.Tarnwick.desktop";
    ASSERT_NO_FATAL_FAILURE(e2e::chooseFromStatusMenu(desktop, pid(), settingsItem));
    ASSERT_NO_FATAL_FAILURE(press("check box", "Launch at Login"));
    ASSERT_TRUE(eventually([&] { return fs::exists(entry); })) << tarnwick->standardOutput();
    EXPECT_EQ(std::system(("desktop-file-validate '" + entry.string() + "'").c_str()), 0);
    const auto exec = platform::xdg::desktop_entry_value::unescaped([&] {
        const auto text = contentsOf(entry);
        const auto start = text.find("\nExec=") + 6;
        return text.substr(start, text.find('\n', start) - start);
    }());
    auto command = platform::xdg::desktopEntryCommandLine(exec);
    ASSERT_FALSE(command.empty()) << exec;
    EXPECT_TRUE(fs::equivalent(command.front(), e2e::tarnwickExecutable()));
    command.push_back("--version");
    EXPECT_EQ(outputOf(command).rfind("Tarnwick ", 0), 0u) << "the entry's command";
    ASSERT_NO_FATAL_FAILURE(press("check box", "Launch at Login"));
    EXPECT_TRUE(eventually([&] { return !fs::exists(entry); }));

    // Beta, picked on the Updates tab from the keyboard.
    ASSERT_NO_FATAL_FAILURE(press("page tab", "Updates"));
    const auto updates = settingsWith("push button", "Check Now");
    ASSERT_TRUE(updates) << outline();
    EXPECT_TRUE(updates->find("check box", "Automatically Check for Updates"));
    EXPECT_TRUE(e2e::saveScreenshot(extentsOf(*updates),
                                    TARNWICK_ARTIFACTS_DIR "/settings-updates-desktop.png"));
    ASSERT_NO_FATAL_FAILURE(press("combo box", "Official Release"));
    ASSERT_TRUE(eventually([&] { return desktop.popupsOf(pid()).size() == 1; }));
    desktop.tap(e2e::downKey);
    desktop.tap(e2e::returnKey);
    EXPECT_TRUE(eventually([&] {
        const auto all = preferences();
        const auto channel = all.find("harrowmere.releaseChannel");
        return channel != all.end() && channel->second.string() &&
               *channel->second.string() == "staging";
    }));
}
