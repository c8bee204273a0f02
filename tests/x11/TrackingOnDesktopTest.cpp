// The program's core (the applications monitor, the list window's model and
// its window actions) on the whole Linux backend, with real programs that
// the system has installed: the file manager playing the Finder, a
// terminal and an image viewer.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "listwindow/InteractionController.h"
#include "listwindow/ListWindowViewModel.h"
#include "listwindow/WindowActions.h"
#include "platform/x11/X11Desktop.h"
#include "support/StandardOutput.h"
#include "tracking/AppsMonitor.h"
#include "x11/DesktopEntryTestTree.h"
#include "x11/InputTestDisplay.h"
#include "x11/ServerView.h"
#include "x11/X11DesktopFixture.h"

namespace x11test {
namespace {

namespace fs = std::filesystem;
using platform::RunningApplicationRef;
using platform::x11::X11Desktop;
using platform::x11::fixtures::DesktopEntryTestTree;
using tarnwick::AppGrouping;
using tarnwick::AppsMonitor;
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
        view.emplace(server.name());
        start({"openbox", "--sm-disable"});
        ASSERT_TRUE(eventually([&] { return view->hasWindowManager(); }));
        X11DesktopTest::SetUp();
        if (HasFatalFailure())
            return;
        openDesktop();
        const auto finder = runningFileManager();
        ASSERT_TRUE(finder) << "no file manager playing the Finder";
        startedGroups.push_back(finder->processIdentifier());
        // Folders asked for before its socket exists would start a second
        // file manager instead of going to this one.
        ASSERT_TRUE(eventually([&] { return fileManagerListens(); }, 10));
    }

    void TearDown() override {
        model.reset();
        monitor.reset();
        install.reset();
        desktop.reset();
        for (const pid_t group : startedGroups) {
            ::kill(-group, SIGKILL);
            ::waitpid(group, nullptr, 0);
        }
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

    // The backend as the program opens it, and the services the core reaches.
    void openDesktop() {
        X11Desktop::Options options;
        options.preferencesPath = home.root() / "preferences.plist";
        desktop = X11Desktop::open(loop, options);
        ASSERT_TRUE(desktop);
        install.emplace(desktop->services());
    }
    // What a restart of the program gives: the preferences read afresh.
    void reopenDesktop() {
        install.reset();
        desktop.reset();
        openDesktop();
    }

    void buildCore() {
        monitor = std::make_shared<AppsMonitor>();
        model = std::make_shared<ListWindowViewModel>(
            std::make_shared<tarnwick::InteractionController>(nullptr), monitor);
        actions.emplace(*model);
        rows = listedTitles();
        rowsFollow = model->stateChanged().connect([this] { rows = listedTitles(); });
    }

    // Starts a program in a session of its own, ended with the test.
    pid_t start(std::vector<std::string> commandLine) {
        platform::x11::X11ProcessLauncher::Options options;
        options.quiet = true;
        const auto started = launcher.spawn(std::move(commandLine), options);
        EXPECT_TRUE(started) << started.error;
        startedGroups.push_back(started.pid);
        return started.pid;
    }
    // Starts a program and waits for its window.
    pid_t startWithWindow(std::vector<std::string> commandLine, const std::string& title) {
        const pid_t pid = start(std::move(commandLine));
        EXPECT_TRUE(windowTitled(pid, title, 10)) << title << " never appeared";
        return pid;
    }
    pid_t startTerminal() {
        return startWithWindow({"xterm", "-T", "Tracking terminal"}, "Tracking terminal");
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

    Names namesIn(const tarnwick::RunningApps& apps, AppGrouping grouping) {
        Names names;
        if (const auto group = apps.find(grouping); group != apps.end()) {
            for (const auto& app : group->second)
                names.push_back(app->localizedName().value_or("?"));
        }
        return names;
    }
    Names namesIn(AppGrouping grouping) { return namesIn(monitor->runningApps(), grouping); }
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
    bool listsExactly(const Names& titles, double seconds = 10) {
        return eventually([&] { return rows == titles; }, seconds);
    }
    ListWindowViewModel::WindowRef listed(const std::string& title) {
        const auto* state = listing();
        for (const auto& window : state ? state->windows : decltype(state->windows){}) {
            if (window->title() == title)
                return window;
        }
        return nullptr;
    }

    DesktopEntryTestTree home;
    InputTestDisplay server;
    ScopedEnvironment environment;
    std::optional<ServerView> view;
    platform::x11::X11ProcessLauncher launcher{loop};
    std::vector<pid_t> startedGroups;
    std::unique_ptr<X11Desktop> desktop;
    std::optional<platform::ScopedInstall> install;
    std::shared_ptr<AppsMonitor> monitor;
    std::shared_ptr<ListWindowViewModel> model;
    std::optional<tarnwick::WindowActions> actions;
    Names rows;
    platform::Subscription rowsFollow;
};

TEST_F(TrackingOnDesktopTest, InstalledApplicationsAreGroupedSortedAndKeepTheUsersChoices) {
    const pid_t terminal = startTerminal();
    const pid_t viewer = startWithWindow(
        {"display-im6.q16", "-nostdin", "-title", "Tracking image", "logo:"}, "Tracking image");
    buildCore();
    EXPECT_EQ(namesIn(AppGrouping::track), (Names{fileManagerName, imageViewerName, terminalName}));
    EXPECT_TRUE(namesIn(AppGrouping::favorite).empty());
    EXPECT_TRUE(namesIn(AppGrouping::noTrack).empty()) << "the window manager isn't offered";

    int told = 0;
    const auto subscription = monitor->runningAppsChanged().connect([&] { ++told; });
    const auto terminalId = *inGroups(terminal)->bundleIdentifier();
    const auto viewerId = *inGroups(viewer)->bundleIdentifier();
    monitor->setGrouping(terminalId, AppGrouping::favorite);
    monitor->setGrouping(viewerId, AppGrouping::hidden);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(namesIn(AppGrouping::favorite), Names{terminalName});
    EXPECT_EQ(namesIn(AppGrouping::track), Names{fileManagerName});
    EXPECT_EQ(namesIn(AppGrouping::hidden), Names{imageViewerName});
    // The menu offers favourites and the others; the hidden one is in neither.
    model->refreshWindows();
    ASSERT_TRUE(listing());
    EXPECT_EQ(namesIn(listing()->apps, AppGrouping::favorite), Names{terminalName});
    EXPECT_EQ(namesIn(listing()->apps, AppGrouping::track), Names{fileManagerName});

    // The next start reads the choices back from the preferences file.
    model.reset();
    monitor.reset();
    reopenDesktop();
    buildCore();
    EXPECT_EQ(namesIn(AppGrouping::favorite), Names{terminalName});
    EXPECT_EQ(namesIn(AppGrouping::hidden), Names{imageViewerName});
    EXPECT_EQ(namesIn(AppGrouping::track), Names{fileManagerName});
}

TEST_F(TrackingOnDesktopTest, ALaunchedApplicationJoinsAtItsFirstWindowAndLeavesWhenItQuits) {
    buildCore();
    int told = 0;
    const auto subscription = monitor->runningAppsChanged().connect([&] { ++told; });
    EXPECT_EQ(namesIn(AppGrouping::track), Names{fileManagerName});

    const pid_t terminal = startTerminal();
    ASSERT_TRUE(eventually([&] { return inGroups(terminal) != nullptr; }));
    EXPECT_EQ(namesIn(AppGrouping::track), (Names{fileManagerName, terminalName}));
    EXPECT_EQ(told, 1);
    // Selected, it lists its window in place of the file manager's.
    model->selectApp(inGroups(terminal));
    EXPECT_EQ(rows, Names{"Tracking terminal"});
    EXPECT_EQ(monitor->appElementCache().size(), 1u);

    ::kill(terminal, SIGTERM);
    ASSERT_TRUE(eventually([&] { return inGroups(terminal) == nullptr; }));
    EXPECT_EQ(namesIn(AppGrouping::track), Names{fileManagerName});
    EXPECT_EQ(told, 2);
    EXPECT_TRUE(monitor->appElementCache().empty());
}

TEST_F(TrackingOnDesktopTest, TheFileManagersWindowsAreListedAsTheyOpenRetitleAndClose) {
    buildCore();
    ASSERT_TRUE(listing());
    EXPECT_EQ(listing()->selectedApp, runningFileManager());
    EXPECT_TRUE(listing()->windows.empty()) << "the file manager waits without a window";

    showFolder("Tracking Alpha", true);
    ASSERT_TRUE(listsExactly({"Tracking Alpha"}));
    const auto first = view->clientTitled("Tracking Alpha");
    ASSERT_TRUE(first);
    // A second folder opens beside the first, in the same window.
    showFolder("Tracking Beta", false);
    ASSERT_TRUE(listsExactly({"Tracking Beta"}));
    EXPECT_EQ(view->clientTitled("Tracking Beta"), first);

    showFolder("Tracking Gamma", true);
    ASSERT_TRUE(listsExactly({"Tracking Beta", "Tracking Gamma"}));
    const auto gamma = view->clientTitled("Tracking Gamma");
    ASSERT_TRUE(gamma);
    actions->closeWindow(listed("Tracking Gamma"));
    EXPECT_TRUE(listsExactly({"Tracking Beta"}));
    EXPECT_TRUE(eventually([&] { return !view->isManaged(gamma); }));
}

TEST_F(TrackingOnDesktopTest, WindowActionsChangeTheRealWindowsAndTheListFollows) {
    const quillbox::CapturedOutput quiet;
    buildCore();
    showFolder("Tracking One", true);
    ASSERT_TRUE(listsExactly({"Tracking One"}));
    showFolder("Tracking Two", true);
    ASSERT_TRUE(listsExactly({"Tracking One", "Tracking Two"}));
    const auto one = view->clientTitled("Tracking One");
    const auto two = view->clientTitled("Tracking Two");
    ASSERT_TRUE(one && two);

    for (const auto& [window, id] :
         {std::pair{"Tracking One", one}, std::pair{"Tracking Two", two}}) {
        actions->raiseWindow(listed(window));
        EXPECT_TRUE(eventually([&] { return view->activeWindow() == id; })) << window;
    }

    int refreshes = 0;
    const auto subscription = model->stateChanged().connect([&] { ++refreshes; });
    actions->toggleMinimized(listed("Tracking Two"));
    EXPECT_GE(refreshes, 1);
    EXPECT_TRUE(eventually([&] { return view->hasState(two, "_NET_WM_STATE_HIDDEN"); }));
    // Minimised, it stays listed.
    EXPECT_TRUE(eventually([&] {
        const auto window = listed("Tracking Two");
        return window && window->isMinimized();
    }));
    EXPECT_EQ(rows, (Names{"Tracking One", "Tracking Two"}));
    actions->toggleMinimized(listed("Tracking Two"));
    EXPECT_TRUE(eventually([&] { return !view->hasState(two, "_NET_WM_STATE_HIDDEN"); }));

    actions->toggleFullScreen(listed("Tracking One"));
    EXPECT_TRUE(eventually([&] { return view->hasState(one, "_NET_WM_STATE_FULLSCREEN"); }));
    EXPECT_TRUE(eventually([&] {
        const auto window = listed("Tracking One");
        return window && window->isFullScreen();
    }));
    actions->toggleFullScreen(listed("Tracking One"));
    EXPECT_TRUE(eventually([&] { return !view->hasState(one, "_NET_WM_STATE_FULLSCREEN"); }));

    actions->closeWindow(listed("Tracking One"));
    EXPECT_TRUE(listsExactly({"Tracking Two"}));
    EXPECT_TRUE(eventually([&] { return !view->isManaged(one); }));
    EXPECT_TRUE(quiet.lines().empty()) << "no action failed: " << quiet.lines().front();
}

}  // namespace
}  // namespace x11test
