// The list of windows with real applications: the file manager's windows on
// the panel, a click that raises one, the round buttons acting on the real
// windows, another application picked from the menu, and the menu's grouping
// commands kept in the preference file across a restart. The application in
// front is a terminal, a GTK editor or a Qt editor; the tests run under two
// window managers (see CMakeLists.txt).
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "DesktopDriver.h"
#include "PanelMap.h"
#include "PreferenceFile.h"
#include "ProgramMenus.h"
#include "RunningProgram.h"

namespace {

using e2e::ClientWindow;
using e2e::eventually;
using e2e::Geometry;
using e2e::PanelMap;
using RoundButton = e2e::PanelMap::RoundButton;

constexpr const char* favoriteAppsKey = "harrowmere.favoriteApps";
constexpr const char* hiddenAppsKey = "harrowmere.hiddenApps";

// The window manager the virtual desktop runs, for the screenshots' names.
std::string windowManagerName() {
    const char* name = std::getenv("TARNWICK_WM");
    return name && *name ? name : "openbox";
}

Geometry enclosing(Geometry a, Geometry b) {
    const int left = std::min(a.x, b.x), top = std::min(a.y, b.y);
    return {left, top, std::max(a.x + a.width, b.x + b.width) - left,
            std::max(a.y + a.height, b.y + b.height) - top};
}

// Each test starts as after the first run, with fresh preferences.
class ListWindowOnDesktopTest : public ::testing::Test {
  protected:
    void SetUp() override { folders.markInstructionsSeen(); }
    void TearDown() override { std::filesystem::remove_all(folderRoot); }

    // Opens a file manager window on each of the folders, one after the
    // other so that they are listed in this order. The first start stays as
    // the file manager's one process; the later ones hand over to it.
    void openFolders(const std::vector<std::string>& names) {
        for (const auto& name : names) {
            const auto folder = folderRoot / name;
            std::filesystem::create_directories(folder);
            const auto before =
                fileManager ? desktop.clientWindowsOf(fileManager->pid()).size() : 0;
            auto process = std::make_unique<e2e::RunningProgram>(
                "/usr/bin/pcmanfm", std::vector<std::string>{"--new-win", folder.string()});
            if (!fileManager)
                fileManager = std::move(process);
            else
                process->waitForExit(10);
            ASSERT_TRUE(eventually(
                [&] { return desktop.clientWindowsOf(fileManager->pid()).size() == before + 1; },
                10));
        }
    }

    // Another application at the front: the one the user is in when the
    // chord is pressed. A terminal by default; the toolkits' own editors
    // (GTK's, Qt's) where a test says which.
    void openInFront(const std::string& program = "/usr/bin/xterm",
                     const std::vector<std::string>& arguments = {"-T", "A terminal"}) {
        front = std::make_unique<e2e::RunningProgram>(program, arguments);
        ASSERT_TRUE(eventually([&] { return !desktop.clientWindowsOf(front->pid()).empty(); }, 10));
        bringFrontApplicationForward();
    }

    void bringFrontApplicationForward() {
        ASSERT_TRUE(desktop.activateWindowOf(front->pid()));
        ASSERT_TRUE(eventually([&] { return desktop.activeProcess() == front->pid(); }));
    }

    void startTarnwick() {
        tarnwick = std::make_unique<e2e::RunningProgram>(e2e::tarnwickExecutable(),
                                                         std::vector<std::string>{});
        ASSERT_TRUE(tarnwick->waitUntilHandling(SIGTERM, 20)) << tarnwick->standardError();
        // A start after the first run brings the panel up at the pointer;
        // each test begins with it taken away again.
        ASSERT_TRUE(eventually([&] { return desktop.panelClient(tarnwick->pid()).has_value(); }));
        desktop.tap(e2e::escapeKey);
        ASSERT_TRUE(panelIsGone());
    }

    void stopTarnwick() {
        tarnwick->sendSignal(SIGTERM);
        EXPECT_EQ(tarnwick->waitForExit(10), (e2e::ExitStatus{true, 0}));
        tarnwick.reset();
    }

    std::optional<PanelMap> panel() {
        const auto content = desktop.panelContent(tarnwick->pid());
        return content ? std::optional(PanelMap(*content)) : std::nullopt;
    }

    // Waits until the shown panel lists this many rows, and maps it.
    std::optional<PanelMap> panelWithRows(int rows) {
        std::optional<PanelMap> map;
        eventually([&] {
            map = panel();
            return map && map->rowCount() == rows;
        });
        if (map && map->rowCount() != rows)
            ADD_FAILURE() << "the panel lists " << map->rowCount().value_or(-1) << " rows, not "
                          << rows;
        return map && map->rowCount() == rows ? map : std::nullopt;
    }

    std::optional<PanelMap> showPanelWithRows(int rows) {
        desktop.movePointer(640, 400);
        desktop.pressChord();
        return panelWithRows(rows);
    }

    bool panelIsGone() {
        return eventually([&] { return !desktop.panelClient(tarnwick->pid()); });
    }

    void openMenuAt(const PanelMap& map, int entry) {
        e2e::openPanelMenuAt(desktop, tarnwick->pid(), map, entry);
    }
    // Runs the grouping command at this place of the entry's sub-menu.
    void chooseFromSubmenu(int item) {
        e2e::chooseFromPanelSubmenu(desktop, tarnwick->pid(), item);
    }

    bool stored(const char* key, const std::string& bundleIdentifier) const {
        const auto values =
            e2e::stringsUnder(e2e::readPreferenceFile(folders.preferenceFile()), key);
        return std::find(values.begin(), values.end(), bundleIdentifier) != values.end();
    }

    void putToFullScreenBelowThePanel(int row);

    std::vector<ClientWindow> folderWindows() {
        return desktop.clientWindowsOf(fileManager->pid());
    }

    e2e::PrivateFolders folders;
    std::filesystem::path folderRoot =
        std::filesystem::temp_directory_path() / ("tarnwick-folders-" + std::to_string(::getpid()));
    e2e::Desktop desktop;
    std::unique_ptr<e2e::RunningProgram> fileManager;
    std::unique_ptr<e2e::RunningProgram> front;
    std::unique_ptr<e2e::RunningProgram> tarnwick;
};

}  // namespace

TEST_F(ListWindowOnDesktopTest, TheChordListsTheFileManagersWindowsAndARowClickRaisesOne) {
    openFolders({"Documents", "Music", "Pictures"});
    openInFront("/usr/bin/mousepad", {});
    startTarnwick();

    const auto map = showPanelWithRows(3);
    ASSERT_TRUE(map);
    const auto windows = folderWindows();
    ASSERT_EQ(windows.size(), 3u);
    desktop.click(map->row(1));

    EXPECT_TRUE(eventually([&] { return desktop.activeWindow() == windows[1].id; }))
        << "raised instead: " << desktop.activeWindow();
    EXPECT_TRUE(panelIsGone());
    stopTarnwick();
}

TEST_F(ListWindowOnDesktopTest, TheRoundButtonsActOnTheRealWindowsAndTheListFollows) {
    openFolders({"Documents", "Music", "Pictures"});
    openInFront("/usr/bin/featherpad", {});
    startTarnwick();
    auto map = showPanelWithRows(3);
    ASSERT_TRUE(map);
    const auto windows = folderWindows();
    ASSERT_EQ(windows.size(), 3u);
    auto isFullScreen = [&](int i) {
        return desktop.hasState(windows[i].id, "_NET_WM_STATE_FULLSCREEN");
    };
    auto isMinimised = [&](int i) {
        return desktop.hasState(windows[i].id, "_NET_WM_STATE_HIDDEN");
    };

    // A minimised window stays listed, its title drawn faint.
    desktop.click(map->roundButton(0, RoundButton::minimize));
    EXPECT_TRUE(eventually([&] { return isMinimised(0); }));
    const Geometry panelArea = map->content();
    EXPECT_TRUE(eventually([&] {
        const auto shot = desktop.capture(panelArea);
        return shot.darkest(map->titleArea(0)) > 100 && shot.darkest(map->titleArea(2)) < 80;
    })) << "the minimised window's title is not the faint one";

    // The screenshot a person looks at: one window minimised, the pointer
    // resting on another row.
    desktop.movePointer(map->row(2).x, map->row(2).y);
    desktop.movePointer(map->row(1).x, map->row(1).y);
    const auto buttons = [&](int row) {
        const auto close = map->roundButton(row, RoundButton::close);
        return Geometry{close.x - 6, close.y - 6, 50, 12};
    };
    EXPECT_TRUE(eventually([&] {
        return !desktop.capture(panelArea).looksAlike(buttons(1), buttons(2));
    })) << "no symbols on the round buttons of the row under the pointer";
    EXPECT_TRUE(e2e::saveScreenshot(panelArea, TARNWICK_ARTIFACTS_DIR "/list-panel-light.png"));

    desktop.click(map->roundButton(2, RoundButton::close));
    EXPECT_TRUE(eventually([&] { return folderWindows().size() == 2; }));
    map = panelWithRows(2);
    ASSERT_TRUE(map);

    // Full screen brings the window forward, and with it its application,
    // which takes the panel away. Back in the editor, the chord brings the
    // panel again.
    desktop.click(map->roundButton(1, RoundButton::fullScreen));
    EXPECT_TRUE(eventually([&] { return isFullScreen(1); }));
    EXPECT_TRUE(panelIsGone());
    bringFrontApplicationForward();
    map = showPanelWithRows(2);
    ASSERT_TRUE(map);
    desktop.click(map->roundButton(1, RoundButton::fullScreen));
    EXPECT_TRUE(eventually([&] { return !isFullScreen(1); }));

    // Restoring brings the file manager forward: the panel goes.
    desktop.click(map->roundButton(0, RoundButton::minimize));
    EXPECT_TRUE(eventually([&] { return !isMinimised(0); }));
    EXPECT_TRUE(panelIsGone());
    stopTarnwick();
}

// Window managers keep the active full-screen window above every other.
// With the file manager in front, its window put to full screen from the
// panel, the one in front or another, comes to the front and the panel stays
// shown: above it, where a click on a row reaches the panel and not the
// window below.
void ListWindowOnDesktopTest::putToFullScreenBelowThePanel(int row) {
    openFolders({"Documents", "Music"});
    startTarnwick();
    const auto windows = folderWindows();
    ASSERT_EQ(windows.size(), 2u);
    desktop.activate(windows[1].id);
    ASSERT_TRUE(eventually([&] { return desktop.activeWindow() == windows[1].id; }));
    auto map = showPanelWithRows(2);
    ASSERT_TRUE(map);
    const auto panelFrame = desktop.frameOf(*desktop.panelClient(tarnwick->pid()));
    desktop.click(map->roundButton(row, RoundButton::fullScreen));
    ASSERT_TRUE(
        eventually([&] { return desktop.hasState(windows[row].id, "_NET_WM_STATE_FULLSCREEN"); }));
    ASSERT_TRUE(eventually([&] { return desktop.activeWindow() == windows[row].id; }));

    map = panelWithRows(2);
    ASSERT_TRUE(map) << "the panel went; the program said:\n" << tarnwick->standardError();
    const int other = 1 - row;
    EXPECT_TRUE(eventually([&] { return desktop.topmostFrameAt(map->row(other)) == panelFrame; }))
        << "the panel's frame " << panelFrame << " is covered by "
        << desktop.topmostFrameAt(map->row(other)).value_or(0) << "; the full-screen window's is "
        << desktop.frameOf(windows[row].id);
    // The panel with the full-screen window around it.
    const auto content = map->content();
    const Geometry around{content.x - 80, content.y - 60, content.width + 160,
                          content.height + 120};
    EXPECT_TRUE(e2e::saveScreenshot(
        around, TARNWICK_ARTIFACTS_DIR "/panel-over-full-screen-" + windowManagerName() + ".png"));
    desktop.click(map->row(other));
    EXPECT_TRUE(eventually([&] { return desktop.activeWindow() == windows[other].id; }))
        << "the click went to: " << desktop.activeWindow();
    stopTarnwick();
}

TEST_F(ListWindowOnDesktopTest, ThePanelStaysAboveTheWindowInFrontPutToFullScreen) {
    putToFullScreenBelowThePanel(1);
}

TEST_F(ListWindowOnDesktopTest, ThePanelStaysAboveAnotherWindowPutToFullScreen) {
    putToFullScreenBelowThePanel(0);
}

// The file manager ended by force is started again by the program, and the
// list follows the new process: its windows are listed, not an error.
TEST_F(ListWindowOnDesktopTest, TheFileManagerEndedByForceIsStartedAgainAndListedAgain) {
    openFolders({"Documents"});
    openInFront();
    startTarnwick();
    ASSERT_TRUE(showPanelWithRows(1));
    desktop.tap(e2e::escapeKey);
    ASSERT_TRUE(panelIsGone());

    // The file manager keeps one instance, found through a socket in the
    // runtime folder, which the one ended by force leaves behind: a new
    // window is asked for only once the new instance listens.
    const pid_t ended = fileManager->pid();
    fileManager->sendSignal(SIGKILL);
    fileManager->waitForExit(10);
    const std::filesystem::path runtime = std::getenv("XDG_RUNTIME_DIR");
    const auto instanceSockets = [&] {
        std::vector<std::filesystem::path> found;
        for (const auto& entry : std::filesystem::directory_iterator(runtime)) {
            if (entry.path().filename().string().starts_with("pcmanfm-socket"))
                found.push_back(entry.path());
        }
        return found;
    };
    for (const auto& stale : instanceSockets())
        std::filesystem::remove(stale);
    std::vector<pid_t> started;
    ASSERT_TRUE(eventually(
        [&] {
            started = folders.processesRunning("/usr/bin/pcmanfm");
            std::erase(started, ended);
            return started.size() == 1 && !instanceSockets().empty();
        },
        10))
        << "not started again";

    const auto folder = folderRoot / "Music";
    std::filesystem::create_directories(folder);
    e2e::RunningProgram("/usr/bin/pcmanfm", {"--new-win", folder.string()}).waitForExit(10);
    ASSERT_TRUE(eventually([&] { return desktop.clientWindowsOf(started.front()).size() == 1; }));
    // The file manager brings its new window forward when it gets to it;
    // with that window in front, doing so later takes nothing away.
    const auto music = desktop.clientWindowsOf(started.front()).front().id;
    desktop.activate(music);
    ASSERT_TRUE(eventually([&] { return desktop.activeWindow() == music; }));
    EXPECT_TRUE(showPanelWithRows(1));
    stopTarnwick();
}

TEST_F(ListWindowOnDesktopTest, TheMenuPicksAnotherApplicationAndKeepsItsGroupingAcrossRestarts) {
    openFolders({"Documents", "Music"});
    openInFront();
    const std::string terminalIdentifier = "debian-xterm";
    startTarnwick();

    // The menu: a divider, then the file manager and the terminal by name.
    auto map = showPanelWithRows(2);
    ASSERT_TRUE(map);
    openMenuAt(*map, 1);
    const auto popups = desktop.popupsOf(tarnwick->pid());
    ASSERT_EQ(popups.size(), 1u);
    const Geometry menu = popups.front();
    EXPECT_TRUE(e2e::saveScreenshot(enclosing(map->content(), menu),
                                    TARNWICK_ARTIFACTS_DIR "/app-menu-light.png"));
    desktop.tap(e2e::returnKey);
    map = panelWithRows(1);
    ASSERT_TRUE(map) << "the terminal's one window is not listed";

    openMenuAt(*map, 1);
    chooseFromSubmenu(0);  // "Favorite"
    EXPECT_TRUE(eventually([&] { return stored(favoriteAppsKey, terminalIdentifier); }));

    // After a restart the favourite heads the menu.
    stopTarnwick();
    startTarnwick();
    map = showPanelWithRows(2);
    ASSERT_TRUE(map);
    openMenuAt(*map, 0);
    desktop.tap(e2e::returnKey);
    map = panelWithRows(1);
    ASSERT_TRUE(map) << "the favourite was not the first entry";

    openMenuAt(*map, 0);
    chooseFromSubmenu(0);  // "Unfavorite", its only command
    EXPECT_TRUE(eventually([&] { return !stored(favoriteAppsKey, terminalIdentifier); }));
    openMenuAt(*map, 1);
    chooseFromSubmenu(1);  // "Hide"
    EXPECT_TRUE(eventually([&] { return stored(hiddenAppsKey, terminalIdentifier); }));
    EXPECT_TRUE(panelWithRows(1)) << "hiding the selected application kept its windows listed";

    // After a restart the hidden terminal is no longer offered.
    stopTarnwick();
    startTarnwick();
    map = showPanelWithRows(2);
    ASSERT_TRUE(map);
    openMenuAt(*map, 0);
    const auto shorterMenu = desktop.popupsOf(tarnwick->pid());
    ASSERT_EQ(shorterMenu.size(), 1u);
    EXPECT_LT(shorterMenu.front().height, menu.height);
    EXPECT_TRUE(stored(hiddenAppsKey, terminalIdentifier));
    stopTarnwick();
}

// A folder name as long as the file system allows makes a title far wider
// than the screen; the panel still fits the screen.
TEST_F(ListWindowOnDesktopTest, ATitleWiderThanTheScreenKeepsThePanelOnIt) {
    openFolders({"Documents", std::string(240, 'W') + " and the end"});
    openInFront();
    startTarnwick();

    const auto map = showPanelWithRows(2);
    ASSERT_TRUE(map);
    const auto shown = desktop.shownPanel(tarnwick->pid());
    ASSERT_TRUE(shown);
    constexpr int screenWidth = 1280;
    EXPECT_LE(shown->width, screenWidth);
    EXPECT_GT(shown->width, screenWidth / 2);
    EXPECT_TRUE(e2e::saveScreenshot(*shown, TARNWICK_ARTIFACTS_DIR "/panel-long-title.png"));
    stopTarnwick();
}
