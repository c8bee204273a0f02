// The panel's rows against windows that change under them: a title set
// while the panel is shown or hidden is the one drawn, and a window closed
// by its row's round button leaves no row behind. The windows are the test
// client's, claimed for the file manager's process, so that they are
// listed as its windows from before the program started.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "PanelMap.h"
#include "RunningProgram.h"
#include "x11/X11TestClientProcess.h"

namespace {

using e2e::AccessibleNode;
using e2e::eventually;
using e2e::PanelMap;

class ListRowsOnDesktopTest : public ::testing::Test {
  protected:
    void SetUp() override {
        folders.markInstructionsSeen();
        std::filesystem::create_directories(folder);
        fileManager = std::make_unique<e2e::RunningProgram>(
            "/usr/bin/pcmanfm", std::vector<std::string>{"--new-win", folder.string()});
        ASSERT_TRUE(eventually(
            [&] { return desktop.clientWindowsOf(fileManager->pid()).size() == 1; }, 10));
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    // A window of the file manager's, as far as the desktop can tell.
    void openWindow(const std::string& name, const std::string& title) {
        const auto before = desktop.clientWindowsOf(fileManager->pid()).size();
        client.create(name, title);
        client.claimPid(name, fileManager->pid());
        ASSERT_TRUE(eventually(
            [&] { return desktop.clientWindowsOf(fileManager->pid()).size() == before + 1; }));
    }

    void startTarnwick() {
        tarnwick = std::make_unique<e2e::RunningProgram>(e2e::tarnwickExecutable(),
                                                         std::vector<std::string>{});
        ASSERT_TRUE(tarnwick->waitUntilHandling(SIGTERM, 20)) << tarnwick->standardError();
        ASSERT_TRUE(eventually([&] { return desktop.panelClient(tarnwick->pid()).has_value(); }));
        desktop.tap(e2e::escapeKey);
        ASSERT_TRUE(panelIsGone());
    }

    void stopTarnwick() {
        tarnwick->sendSignal(SIGTERM);
        EXPECT_EQ(tarnwick->waitForExit(10), (e2e::ExitStatus{true, 0}));
    }

    bool panelIsGone() {
        return eventually([&] { return !desktop.panelClient(tarnwick->pid()); });
    }

    void showPanel() {
        desktop.movePointer(640, 400);
        desktop.pressChord();
        ASSERT_TRUE(eventually([&] { return desktop.panelClient(tarnwick->pid()).has_value(); }))
            << tarnwick->standardError();
    }

    // The titles of the rows a screen reader finds on the shown panel.
    static std::string quoted(const std::vector<std::string>& titles) {
        std::string listed;
        for (const auto& title : titles)
            listed += "\"" + title + "\" ";
        return listed;
    }

    std::vector<std::string> rowTitles() {
        std::vector<std::string> titles;
        const auto tree = bus.application("Tarnwick", 2, tarnwick->pid());
        if (!tree)
            return titles;
        for (const auto* node : tree->flattened()) {
            // A row is a button holding the three round buttons.
            if (node->role == "push button" && node->children.size() >= 3 && node->width > 0)
                titles.push_back(node->name);
        }
        return titles;
    }

    bool rowsAre(const std::vector<std::string>& expected) {
        std::vector<std::string> seen;
        const bool same = eventually(
            [&] {
                seen = rowTitles();
                return seen == expected;
            },
            10);
        if (!same)
            ADD_FAILURE() << "the rows read " << quoted(seen);
        return same;
    }

    // Only the rows in sight, and a few beyond, have widgets a screen
    // reader finds: a run of the expected rows, at least a panelful, that
    // begins with the first row or ends with the last.
    enum class End { first, last };
    bool rowsInSightAre(const std::vector<std::string>& expected, End end) {
        constexpr std::size_t panelful = 18;
        std::vector<std::string> seen;
        const bool same = eventually(
            [&] {
                seen = rowTitles();
                if (seen.size() < std::min(panelful, expected.size()) ||
                    std::search(expected.begin(), expected.end(), seen.begin(), seen.end()) ==
                        expected.end())
                    return false;
                return end == End::first ? seen.front() == expected.front()
                                         : seen.back() == expected.back();
            },
            10);
        if (!same)
            ADD_FAILURE() << "the rows read " << quoted(seen);
        return same;
    }

    std::optional<PanelMap> panelWithRows(int rows) {
        std::optional<PanelMap> map;
        eventually([&] {
            const auto content = desktop.panelContent(tarnwick->pid());
            map = content ? std::optional(PanelMap(*content)) : std::nullopt;
            return map && map->rowCount() == rows;
        });
        return map && map->rowCount() == rows ? map : std::nullopt;
    }

    e2e::PrivateFolders folders;
    e2e::AccessibilityBus& bus = e2e::AccessibilityBus::shared();
    std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                   ("tarnwick-rows-" + std::to_string(::getpid())) / "Documents";
    e2e::Desktop desktop;
    std::unique_ptr<e2e::RunningProgram> fileManager;
    x11test::TestClient client;
    std::unique_ptr<e2e::RunningProgram> tarnwick;
};

}  // namespace

TEST_F(ListRowsOnDesktopTest, ARetitledWindowShowsItsNewTitleWhileShownAndAfterTheChordAgain) {
    ASSERT_TRUE(bus.isUp());
    openWindow("notes", "Draft notes");
    startTarnwick();

    showPanel();
    ASSERT_TRUE(rowsAre({"Documents", "Draft notes"}));
    client.retitle("notes", "Saved notes");
    EXPECT_TRUE(rowsAre({"Documents", "Saved notes"})) << "the shown panel kept the old title";

    desktop.tap(e2e::escapeKey);
    ASSERT_TRUE(panelIsGone());
    client.retitle("notes", "Notes, renamed while hidden");
    showPanel();
    EXPECT_TRUE(rowsAre({"Documents", "Notes, renamed while hidden"}))
        << "the panel shown again kept the old title";
    stopTarnwick();
}

// The window manager passes the panel by: a window it maps and places
// under the shown panel is listed there, and stays below it.
TEST_F(ListRowsOnDesktopTest, AWindowOpenedUnderTheShownPanelIsListedAndStaysBelowIt) {
    startTarnwick();
    showPanel();
    ASSERT_TRUE(panelWithRows(1));
    const xcb_window_t panel = *desktop.panelClient(tarnwick->pid());
    const xcb_window_t opened = client.create("under", "Opened under the panel");
    client.claimPid("under", fileManager->pid());
    client.move("under", 560, 340);

    const auto map = panelWithRows(2);
    ASSERT_TRUE(map);
    const auto row = map->row(1);
    EXPECT_TRUE(eventually([&] { return desktop.topmostFrameAt(row) == panel; }))
        << "the row is covered by " << desktop.topmostFrameAt(row).value_or(0);
    // Where the panel was, the window is.
    desktop.tap(e2e::escapeKey);
    ASSERT_TRUE(panelIsGone());
    EXPECT_TRUE(eventually([&] { return desktop.topmostFrameAt(row) == desktop.frameOf(opened); }))
        << "the window was not placed under the row";
    stopTarnwick();
}

TEST_F(ListRowsOnDesktopTest, WindowsClosedByTheirRowsLeaveNoRowBehind) {
    ASSERT_TRUE(bus.isUp());
    const std::vector<std::string> names = {"one", "two", "three", "four"};
    for (const auto& name : names)
        openWindow(name, "Window " + name);
    startTarnwick();
    showPanel();
    ASSERT_TRUE(rowsAre({"Documents", "Window one", "Window two", "Window three", "Window four"}));

    // Closing the last row each time, the way down to the file manager's
    // own window: the panel shrinks by one row each time, and no row is
    // left for a window that went.
    for (int remaining = 4; remaining > 0; --remaining) {
        auto map = panelWithRows(remaining + 1);
        ASSERT_TRUE(map) << "the panel doesn't list " << remaining + 1 << " rows";
        desktop.click(map->roundButton(remaining, PanelMap::RoundButton::close));
        ASSERT_TRUE(eventually([&] {
            return desktop.clientWindowsOf(fileManager->pid()).size() ==
                   static_cast<std::size_t>(remaining);
        }));
        std::vector<std::string> expected = {"Documents"};
        for (int i = 0; i + 1 < remaining; ++i)
            expected.push_back("Window " + names[static_cast<std::size_t>(i)]);
        EXPECT_TRUE(rowsAre(expected)) << "after closing row " << remaining;
        EXPECT_TRUE(panelWithRows(remaining)) << "the panel's height keeps a row that went";
    }
    stopTarnwick();
}

TEST_F(ListRowsOnDesktopTest, ABurstLeavesTheRowsOfTheWindowsThatRemainOnAPanelThatFitsTheScreen) {
    ASSERT_TRUE(bus.isUp());
    startTarnwick();
    showPanel();
    ASSERT_TRUE(rowsAre({"Documents"}));

    // Sixty windows come while the panel is shown, and every other one
    // goes again at once.
    const int count = 60;
    for (int i = 0; i < count; ++i) {
        client.create("w" + std::to_string(i), "Burst " + std::to_string(i));
        client.claimPid("w" + std::to_string(i), fileManager->pid());
    }
    std::vector<std::string> expected = {"Documents"};
    for (int i = 0; i < count; ++i) {
        if (i % 2 == 0)
            client.destroy("w" + std::to_string(i));
        else
            expected.push_back("Burst " + std::to_string(i));
    }
    ASSERT_TRUE(eventually(
        [&] { return desktop.clientWindowsOf(fileManager->pid()).size() == expected.size(); }, 20));
    EXPECT_TRUE(rowsInSightAre(expected, End::first));

    // Thirty-one rows are more than the screen holds: the panel is no
    // taller than the screen, and its rows scroll. Shown again, it is
    // centred on the pointer and on the screen from edge to edge.
    desktop.tap(e2e::escapeKey);
    ASSERT_TRUE(panelIsGone());
    showPanel();
    std::optional<e2e::Geometry> frame;
    ASSERT_TRUE(
        eventually([&] { return (frame = desktop.shownPanel(tarnwick->pid())).has_value(); }));
    EXPECT_LE(frame->height, 800) << "taller than the screen";
    EXPECT_GT(frame->height, 600) << "leaves room unused";
    EXPECT_TRUE(rowsInSightAre(expected, End::first));
    EXPECT_TRUE(e2e::saveScreenshot(*frame, TARNWICK_ARTIFACTS_DIR "/list-panel-many-rows.png"));

    // The wheel brings the last rows into sight, drawn as they come.
    desktop.turnWheel({frame->x + frame->width / 2, frame->y + frame->height / 2}, 20);
    EXPECT_TRUE(rowsInSightAre(expected, End::last));
    EXPECT_TRUE(
        e2e::saveScreenshot(*frame, TARNWICK_ARTIFACTS_DIR "/list-panel-many-rows-scrolled.png"));
    stopTarnwick();
}
