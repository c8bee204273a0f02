// The program's core (the applications monitor and the list window's model)
// on the whole Linux backend, with real programs that the system has
// installed: the file manager playing the Finder, a terminal and an image
// viewer. What the panel makes of it is shown end to end elsewhere.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "listwindow/InteractionController.h"
#include "listwindow/ListWindowViewModel.h"
#include "listwindow/WindowActions.h"
#include "platform/x11/X11Desktop.h"
#include "support/ScopedEnvironment.h"
#include "support/StandardOutput.h"
#include "tracking/AppsMonitor.h"
#include "x11/InputTestDisplay.h"
#include "x11/X11DesktopFixture.h"
#include "xdg/DesktopEntryTestTree.h"

namespace x11test {
namespace {

namespace fs = std::filesystem;
using platform::RunningApplicationRef;
using platform::x11::X11Desktop;
using platform::xdg::fixtures::DesktopEntryTestTree;
using tarnwick::AppGrouping;
using tarnwick::ListWindowViewModel;
using Names = std::vector<std::string>;

constexpr const char* fileManagerName = "File Manager PCManFM";
constexpr const char* imageViewerName = "ImageMagick (color depth=q16)";
constexpr const char* terminalName = "XTerm";

// Each test has an X server and a window manager of its own, so that the
// terminals and file managers that other tests start beside it on the
// shared display don't run here, and the file manager playing the Finder
// is the one this desktop starts.
class TrackingOnDesktopTest : public X11DesktopTest {
  protected:
    void SetUp() override {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "needs a display (scripts/virtual-desktop.sh)";
        ASSERT_TRUE(server.started()) << "cannot start a private X server";
        useOwnSession();
        start({"openbox", "--sm-disable"});
        X11DesktopTest::SetUp();  // waits for the window manager
        if (HasFatalFailure())
            return;
        X11Desktop::Options options;
        options.preferencesPath = home.root() / "preferences.plist";
        desktop = X11Desktop::open(loop, options);
        ASSERT_TRUE(desktop);
        install.emplace(desktop->services());
        const auto finder = runningFileManager();
        ASSERT_TRUE(finder) << "no file manager playing the Finder";
        startedGroups.push_back(finder->processIdentifier());
        // Folders asked for before its socket exists would start a second
        // file manager instead of going to this one.
        ASSERT_TRUE(eventually([&] { return fileManagerListens(); }, 10));
        monitor = std::make_shared<tarnwick::AppsMonitor>();
        model = std::make_shared<ListWindowViewModel>(
            std::make_shared<tarnwick::InteractionController>(nullptr), monitor);
        rows = listedTitles();
        rowsFollow = model->stateChanged().connect([this] { rows = listedTitles(); });
    }

    void TearDown() override {
        rowsFollow.cancel();
        model.reset();
        monitor.reset();
        install.reset();
        desktop.reset();
        X11DesktopTest::TearDown();
    }

    // The system's installed applications with a private runtime folder,
    // configuration and preferences, named in the untranslated language.
    void useOwnSession() {
        for (const char* folder : {"run", "config", "data", "cache"}) {
            fs::create_directories(home.root() / folder);
            fs::permissions(home.root() / folder, fs::perms::owner_all);
        }
        environment.set("DISPLAY", server.name());
        environment.set("XDG_RUNTIME_DIR", (home.root() / "run").string());
        environment.set("XDG_CONFIG_HOME", (home.root() / "config").string());
        environment.set("XDG_DATA_HOME", (home.root() / "data").string());
        environment.set("XDG_CACHE_HOME", (home.root() / "cache").string());
        environment.set("LC_ALL", "C");
    }

    RunningApplicationRef runningFileManager() {
        for (const auto& app : desktop->workspace().runningApplications()) {
            if (app->bundleIdentifier() == ListWindowViewModel::finderBundleIdentifier)
                return app;
        }
        return nullptr;
    }
    bool fileManagerListens() {
        for (const auto& entry : fs::directory_iterator(home.root() / "run")) {
            if (entry.path().filename().string().starts_with("pcmanfm-socket"))
                return true;
        }
        return false;
    }
    // Has the file manager show a folder of this name: in a window of its
    // own, or else in its last window, whose title then follows.
    void showFolder(const std::string& name, bool newWindow) {
        const auto folder = home.root() / name;
        fs::create_directories(folder);
        if (newWindow)
            start({"pcmanfm", "--new-win", folder.string()});
        else
            start({"pcmanfm", folder.string()});
    }

    Names namesIn(AppGrouping grouping) {
        Names names;
        const auto& apps = monitor->runningApps();
        if (const auto group = apps.find(grouping); group != apps.end()) {
            for (const auto& app : group->second)
                names.push_back(app->localizedName().value_or("?"));
        }
        return names;
    }
    RunningApplicationRef inGroups(pid_t pid) {
        for (const auto& [grouping, group] : monitor->runningApps()) {
            for (const auto& app : group) {
                if (app->processIdentifier() == pid)
                    return app;
            }
        }
        return nullptr;
    }

    const ListWindowViewModel::WindowsState* listing() {
        return std::get_if<ListWindowViewModel::WindowsState>(&model->state());
    }
    Names listedTitles() {
        Names titles;
        if (const auto* state = listing()) {
            for (const auto& window : state->windows)
                titles.push_back(window->title().value_or(""));
        }
        return titles;
    }
    // The titles as they were read at the model's last refresh: what the
    // list shows, since a title read later may already be newer.
    bool listsExactly(const Names& titles) {
        return eventually([&] { return rows == titles; }, 10);
    }

    DesktopEntryTestTree home;
    InputTestDisplay server;
    testsupport::ScopedEnvironment environment;
    std::unique_ptr<X11Desktop> desktop;
    std::optional<platform::ScopedInstall> install;
    std::shared_ptr<tarnwick::AppsMonitor> monitor;
    std::shared_ptr<ListWindowViewModel> model;
    Names rows;
    platform::Subscription rowsFollow;
};

TEST_F(TrackingOnDesktopTest, ApplicationsJoinAtTheirFirstWindowSortedAndLeaveWhenTheyQuit) {
    int told = 0;
    auto subscription = monitor->runningAppsChanged().connect([&] { ++told; });
    EXPECT_EQ(namesIn(AppGrouping::track), Names{fileManagerName});
    EXPECT_TRUE(namesIn(AppGrouping::noTrack).empty()) << "the window manager isn't offered";

    const pid_t terminal = start({"xterm", "-T", "Tracking terminal"}, "Tracking terminal");
    ASSERT_TRUE(eventually([&] { return inGroups(terminal) != nullptr; }));
    EXPECT_EQ(told, 1);
    const pid_t viewer = start({"display-im6.q16", "-nostdin", "-title", "Tracking image", "logo:"},
                               "Tracking image");
    ASSERT_TRUE(eventually([&] { return inGroups(viewer) != nullptr; }));
    EXPECT_EQ(told, 2);
    EXPECT_EQ(namesIn(AppGrouping::track), (Names{fileManagerName, imageViewerName, terminalName}));

    monitor->setGrouping(*inGroups(terminal)->bundleIdentifier(), AppGrouping::favorite);
    monitor->setGrouping(*inGroups(viewer)->bundleIdentifier(), AppGrouping::hidden);
    EXPECT_EQ(told, 4);
    EXPECT_EQ(namesIn(AppGrouping::favorite), Names{terminalName});
    EXPECT_EQ(namesIn(AppGrouping::track), Names{fileManagerName});
    EXPECT_EQ(namesIn(AppGrouping::hidden), Names{imageViewerName});

    // Selected, the terminal lists its window; quitting, it leaves.
    model->selectApp(inGroups(terminal));
    EXPECT_EQ(rows, Names{"Tracking terminal"});
    EXPECT_EQ(monitor->appElementCache().size(), 1u);
    ::kill(terminal, SIGTERM);
    ASSERT_TRUE(eventually([&] { return inGroups(terminal) == nullptr; }));
    EXPECT_EQ(told, 5);
    EXPECT_TRUE(namesIn(AppGrouping::favorite).empty());
    EXPECT_TRUE(monitor->appElementCache().empty());
}

TEST_F(TrackingOnDesktopTest, TheFileManagersWindowsAreListedAsTheyOpenRetitleAndClose) {
    const quillbox::CapturedOutput quiet;
    ASSERT_TRUE(listing());
    EXPECT_EQ(listing()->selectedApp, runningFileManager());
    EXPECT_TRUE(listing()->windows.empty()) << "the file manager waits without a window";

    const pid_t fileManager = listing()->selectedApp->processIdentifier();
    showFolder("Tracking Alpha", true);
    ASSERT_TRUE(listsExactly({"Tracking Alpha"}));
    const auto first = windowTitled(fileManager, "Tracking Alpha");
    ASSERT_TRUE(first);
    // A second folder opens beside the first, in the same window.
    showFolder("Tracking Beta", false);
    ASSERT_TRUE(listsExactly({"Tracking Beta"}));
    EXPECT_TRUE(platform::CFEqual(windowTitled(fileManager, "Tracking Beta"), first));

    showFolder("Tracking Gamma", true);
    ASSERT_TRUE(listsExactly({"Tracking Beta", "Tracking Gamma"}));
    tarnwick::WindowActions(*model).closeWindow(listing()->windows.back());
    EXPECT_TRUE(listsExactly({"Tracking Beta"}));
    EXPECT_TRUE(eventually([&] { return titlesOf(fileManager) == Names{"Tracking Beta"}; }));
    EXPECT_TRUE(quiet.lines().empty()) << "closing failed: " << quiet.lines().front();
}

}  // namespace
}  // namespace x11test
