#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <iterator>

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Desktop.h"
#include "platform/x11/X11Workspace.h"
#include "platform/xdg/DesktopEntryStartability.h"
#include "platform/xdg/ProcessInfo.h"
#include "support/ScopedEnvironment.h"
#include "x11/X11DesktopFixture.h"
#include "xdg/DesktopEntryTestTree.h"

namespace x11test {
namespace {

using platform::RunningApplicationRef;
using platform::WorkspaceNotification;
using platform::x11::X11Desktop;
using platform::xdg::fixtures::DesktopEntryTestTree;

// The workspace of the whole Linux backend on the virtual desktop, with
// installed applications from a temporary tree.
class WorkspaceOnDesktopTest : public X11DesktopTest {
  protected:
    void TearDown() override {
        desktop.reset();
        X11DesktopTest::TearDown();
    }

    void install(const std::string& file, std::string_view name, std::string_view exec,
                 std::string_view extra = {}) {
        tree.writeApplication(DesktopEntryTestTree::system + file, name, exec, extra);
    }
    void openDesktop() {
        X11Desktop::Options options;
        options.directories = tree.directories();
        options.preferencesPath = tree.root() / "preferences.plist";
        desktop = X11Desktop::open(loop, options);
        ASSERT_TRUE(desktop);
    }
    platform::x11::X11Workspace& workspace() { return desktop->workspace(); }

    RunningApplicationRef running(pid_t pid) {
        return workspace().runningApplicationWithProcessIdentifier(pid);
    }
    bool isListed(const RunningApplicationRef& application) {
        const auto all = workspace().runningApplications();
        return std::find(all.begin(), all.end(), application) != all.end();
    }
    // Those of the workspace's notifications that concern the process: other
    // tests' programs come and go on the same desktop.
    static std::vector<RunningApplicationRef> concerning(
        const std::vector<RunningApplicationRef>& list, pid_t pid) {
        std::vector<RunningApplicationRef> found;
        std::copy_if(list.begin(), list.end(), std::back_inserter(found),
                     [pid](const auto& app) { return app && app->processIdentifier() == pid; });
        return found;
    }
    // Into `launched` and `terminated`.
    void recordLaunchesAndTerminations() {
        for (const auto name : {WorkspaceNotification::didLaunchApplication,
                                WorkspaceNotification::didTerminateApplication}) {
            workspace().addObserverForName(name, [this, name](const auto& info) {
                (name == WorkspaceNotification::didLaunchApplication ? launched : terminated)
                    .push_back(info.application);
            });
        }
    }
    // What a window manager says when no window has the focus, said on
    // the root window as it would.
    static void announceNoActiveWindow() {
        xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        const auto atom =
            platform::x11::awaitReply(connection, xcb_intern_atom_reply,
                                      xcb_intern_atom(connection, 0, 18, "_NET_ACTIVE_WINDOW"));
        const xcb_window_t none = XCB_NONE;
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, atom->atom, XCB_ATOM_WINDOW,
                            32, 1, &none);
        xcb_flush(connection);
        xcb_disconnect(connection);
    }
    void expectStartedAgainWhenEnded(const RunningApplicationRef& first);
    std::vector<RunningApplicationRef> finders() {
        std::vector<RunningApplicationRef> found;
        for (const auto& app : workspace().runningApplications()) {
            if (app->bundleIdentifier() == "com.apple.finder")
                found.push_back(app);
        }
        return found;
    }
    // The file manager keeps one instance per user, found through a socket
    // in the runtime folder: a private folder keeps other desktops' file
    // managers out of the test.
    void installFileManagerOfItsOwn() {
        const auto runtime = tree.root() / "runtime";
        std::filesystem::create_directories(runtime);
        environment.set("XDG_RUNTIME_DIR", runtime.string());
        install("pcmanfm.desktop", "File Manager PCManFM", "pcmanfm %U",
                "MimeType=inode/directory;\n");
    }
    // The titles of the windows the desktop's accessibility gives the
    // application.
    std::vector<std::string> windowTitlesOf(const RunningApplicationRef& application) {
        std::vector<std::string> titles;
        auto& accessibility = desktop->accessibility();
        std::optional<platform::CFValue> list;
        accessibility.copyAttributeValue(
            accessibility.createApplication(application->processIdentifier()), "AXWindows", list);
        if (const auto* array = list ? list->get<platform::CFValue::Array>() : nullptr) {
            for (const auto& item : *array) {
                std::optional<platform::CFValue> title;
                accessibility.copyAttributeValue(*item.get<platform::AXUIElementRef>(), "AXTitle",
                                                 title);
                titles.push_back(title && title->get<std::string>() ? *title->get<std::string>()
                                                                    : "<none>");
            }
        }
        std::sort(titles.begin(), titles.end());
        return titles;
    }
    std::vector<RunningApplicationRef> withBundleIdentifier(const std::string& identifier) {
        std::vector<RunningApplicationRef> found;
        for (const auto& app : workspace().runningApplications()) {
            if (app->bundleIdentifier() == identifier)
                found.push_back(app);
        }
        return found;
    }
    void settle() {
        loop.runUntil([] { return false; }, 0.2);
    }

    DesktopEntryTestTree tree;
    testsupport::ScopedEnvironment environment;
    std::unique_ptr<X11Desktop> desktop;
    std::vector<RunningApplicationRef> launched, terminated;
};

TEST_F(WorkspaceOnDesktopTest, ProcessesWithWindowsOrOfInstalledApplicationsRunAndSoDoWe) {
    install("xterm.desktop", "XTerm", "xterm");
    // A program that starts a helper of itself, as multi-process
    // applications do; neither opens a window.
    const auto program = tree.write("bin/quietly-waiting",
                                    "#!/bin/sh\n"
                                    "if [ \"$1\" != helper ]; then \"$0\" helper & fi\n"
                                    "sleep 30\n");
    ::chmod(program.c_str(), 0755);
    install("org.example.Waiting.desktop", "Waiting", "quietly-waiting");
    TestClient client;
    client.create("plain", "Workspace plain");
    ASSERT_TRUE(windowTitled(client.pid(), "Workspace plain"));
    const pid_t xterm = start({"xterm", "-T", "Workspace xterm"}, "Workspace xterm");
    const pid_t waiting = start({program.string()});
    pid_t helper = 0;
    ASSERT_TRUE(eventually([&] {
        for (const pid_t pid : platform::xdg::allProcessIdentifiers()) {
            if (platform::xdg::parentProcessIdentifier(pid) == waiting &&
                platform::xdg::ProcessInfo::read(pid).name == "quietly-waiting")
                helper = pid;
        }
        return helper != 0;
    }));
    openDesktop();

    const auto terminal = running(xterm);
    ASSERT_TRUE(terminal);
    EXPECT_EQ(terminal->bundleIdentifier(), "xterm");
    EXPECT_EQ(terminal->bundleURL(), tree.root() / "usr/share/applications/xterm.desktop");
    EXPECT_EQ(terminal->localizedName(), "XTerm");
    EXPECT_TRUE(isListed(terminal));
    EXPECT_EQ(running(xterm), terminal) << "one object per process";

    const auto plain = running(client.pid());
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->localizedName(), "x11_test_client");
    EXPECT_FALSE(plain->bundleIdentifier());

    const auto application = running(waiting);
    ASSERT_TRUE(application);
    EXPECT_EQ(application->bundleIdentifier(), "org.example.Waiting");
    EXPECT_FALSE(running(helper)) << "the helper is part of the application";

    const auto self = workspace().currentApplication();
    ASSERT_TRUE(self);
    EXPECT_EQ(self->processIdentifier(), ::getpid());
    EXPECT_EQ(self->bundleIdentifier(), "harrowmere.Tarnwick");
    EXPECT_EQ(running(::getpid()), self);
    EXPECT_TRUE(isListed(self));
    EXPECT_FALSE(running(999999));
}

TEST_F(WorkspaceOnDesktopTest, AFirstWindowLaunchesAndTheProcessEndTerminates) {
    openDesktop();
    recordLaunchesAndTerminations();
    TestClient client;
    settle();
    EXPECT_FALSE(running(client.pid())) << "no window yet";

    client.create("first", "Workspace first");
    ASSERT_TRUE(eventually([&] { return concerning(launched, client.pid()).size() == 1; }));
    const auto application = running(client.pid());
    ASSERT_TRUE(application);
    EXPECT_EQ(concerning(launched, client.pid()).front(), application);
    EXPECT_FALSE(application->isTerminated());

    client.create("second", "Workspace second");
    ASSERT_TRUE(windowTitled(client.pid(), "Workspace second"));
    settle();
    EXPECT_EQ(concerning(launched, client.pid()).size(), 1u) << "only the first window launches";

    ::kill(client.pid(), SIGKILL);
    ASSERT_TRUE(eventually([&] { return concerning(terminated, client.pid()).size() == 1; }));
    EXPECT_EQ(concerning(terminated, client.pid()).front(), application);
    EXPECT_TRUE(application->isTerminated());
    EXPECT_FALSE(running(client.pid()));
    EXPECT_FALSE(isListed(application));
}

TEST_F(WorkspaceOnDesktopTest, TheFrontmostApplicationFollowsTheActiveWindow) {
    TestClient first;
    TestClient second;
    first.create("one", "Frontmost one");
    second.create("two", "Frontmost two");
    const auto one = windowTitled(first.pid(), "Frontmost one");
    const auto two = windowTitled(second.pid(), "Frontmost two");
    ASSERT_TRUE(one && two);
    openDesktop();

    std::vector<RunningApplicationRef> told;
    auto subscription = workspace().observeFrontmostApplication(
        true, [&](const RunningApplicationRef& app) { told.push_back(app); });
    ASSERT_EQ(told.size(), 1u) << "the present value at once";
    EXPECT_EQ(told.front(), workspace().frontmostApplication());

    for (const auto& [window, pid] : {std::pair{one, first.pid()}, std::pair{two, second.pid()}}) {
        ASSERT_EQ(ax->performAction(window, "AXRaise"), platform::axError::success);
        ASSERT_TRUE(eventually([&] { return workspace().frontmostApplication() == running(pid); }));
        EXPECT_EQ(told.back(), running(pid));
    }

    // A window manager passing the focus through no window, as some do when
    // a window goes to full screen, brings no application to the front. The
    // window manager may still be finishing the raise and announce the
    // window again over what is said here; then it is said again.
    ASSERT_TRUE(eventually([&] {
        if (desktop->activeWindowTracker().activeWindow() == XCB_NONE)
            return true;
        announceNoActiveWindow();
        return false;
    }));
    EXPECT_EQ(workspace().frontmostApplication(), running(second.pid()));
    EXPECT_EQ(told.back(), running(second.pid()));

    const auto count = told.size();
    subscription.cancel();
    ASSERT_EQ(ax->performAction(one, "AXRaise"), platform::axError::success);
    ASSERT_TRUE(
        eventually([&] { return workspace().frontmostApplication() == running(first.pid()); }));
    EXPECT_EQ(told.size(), count) << "no word after cancelling";
}

TEST_F(WorkspaceOnDesktopTest, TheFileManagerIsStartedInItsBackgroundModeToPlayTheFinderOnce) {
    installFileManagerOfItsOwn();
    openDesktop();
    ASSERT_EQ(finders().size(), 1u);
    const pid_t pid = finders().front()->processIdentifier();
    startedGroups.push_back(pid);
    // Just started, the process may not have its arguments in place yet.
    EXPECT_TRUE(eventually([&] {
        return platform::xdg::ProcessInfo::read(pid).commandLine ==
               std::vector<std::string>{platform::xdg::findExecutable("pcmanfm")->string(),
                                        "--daemon-mode"};
    }));

    // Running already, it is found and not started again.
    desktop.reset();
    openDesktop();
    ASSERT_EQ(finders().size(), 1u);
    EXPECT_EQ(finders().front()->processIdentifier(), pid);
}

// Ends the process playing the Finder and checks that the workspace starts
// a file manager again after its pause.
void WorkspaceOnDesktopTest::expectStartedAgainWhenEnded(const RunningApplicationRef& first) {
    ::kill(first->processIdentifier(), SIGKILL);
    ASSERT_TRUE(
        eventually([&] { return !concerning(terminated, first->processIdentifier()).empty(); }));
    EXPECT_TRUE(finders().empty());
    loop.advance(1);  // the pause before starting it again
    ASSERT_TRUE(eventually([&] { return finders().size() == 1 && finders().front() != first; }))
        << "not started again";
    const auto second = finders().front();
    startedGroups.push_back(second->processIdentifier());
    EXPECT_EQ(concerning(terminated, first->processIdentifier()).size(), 1u);
    EXPECT_EQ(concerning(launched, second->processIdentifier()).size(), 1u);
}

TEST_F(WorkspaceOnDesktopTest, TheFileManagerStartedIsStartedAgainWhenItEnds) {
    installFileManagerOfItsOwn();
    openDesktop();
    recordLaunchesAndTerminations();
    ASSERT_EQ(finders().size(), 1u);
    startedGroups.push_back(finders().front()->processIdentifier());
    expectStartedAgainWhenEnded(finders().front());
}

TEST_F(WorkspaceOnDesktopTest, AFileManagerFoundRunningIsReplacedWhenItEnds) {
    installFileManagerOfItsOwn();
    const pid_t found = start({"pcmanfm", "--daemon-mode"});
    ASSERT_TRUE(eventually(
        [&] { return platform::xdg::ProcessInfo::read(found).commandLine.size() == 2; }));
    openDesktop();
    recordLaunchesAndTerminations();
    ASSERT_EQ(finders().size(), 1u);
    ASSERT_EQ(finders().front()->processIdentifier(), found) << "not the one running";
    expectStartedAgainWhenEnded(finders().front());
}

// The session runs a file manager that shows no window; no list names a
// default for folders. It plays the Finder, and none of ours is started.
TEST_F(WorkspaceOnDesktopTest, ARunningFileManagerPlaysTheFinderAndNoneIsStarted) {
    installFileManagerOfItsOwn();
    const auto program = tree.write("bin/zz-folders", "#!/bin/sh\nsleep 30\n");
    ::chmod(program.c_str(), 0755);
    install("zz-folders.desktop", "Folders", program.string() + " %U",
            "MimeType=inode/directory;\n");
    const pid_t running = start({program.string()});
    ASSERT_TRUE(eventually(
        [&] { return platform::xdg::ProcessInfo::read(running).commandLine.size() == 2; }));
    openDesktop();
    ASSERT_EQ(finders().size(), 1u);
    EXPECT_EQ(finders().front()->processIdentifier(), running);
    EXPECT_EQ(finders().front()->localizedName(), "Folders");
}

// An editor whose settings entry runs the same program: two processes of it
// are one application, found by the window's application id or, without one,
// as the entry that starts the program without options.
TEST_F(WorkspaceOnDesktopTest, ProcessesOfOneInstalledApplicationAreOneApplication) {
    install("org.example.Editor-settings.desktop", "Editor Settings",
            "x11_test_client --preferences");
    install("org.example.Editor.desktop", "Editor", "x11_test_client %U");
    install("xterm.desktop", "XTerm", "xterm");
    TestClient first;
    first.setApplicationId("org.example.Editor");
    first.create("one", "Editor one");
    ASSERT_TRUE(windowTitled(first.pid(), "Editor one"));
    const pid_t terminal = start({"xterm", "-T", "Grouped xterm one"}, "Grouped xterm one");
    openDesktop();
    recordLaunchesAndTerminations();

    TestClient second;
    second.create("two", "Editor two");
    ASSERT_TRUE(windowTitled(second.pid(), "Editor two"));
    const pid_t otherTerminal = start({"xterm", "-T", "Grouped xterm two"}, "Grouped xterm two");
    settle();
    const auto editor = running(first.pid());
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->localizedName(), "Editor");
    EXPECT_EQ(editor->bundleIdentifier(), "org.example.Editor");
    EXPECT_EQ(running(second.pid()), editor) << "one application, two processes";
    EXPECT_EQ(withBundleIdentifier("org.example.Editor").size(), 1u);
    EXPECT_TRUE(concerning(launched, second.pid()).empty());
    EXPECT_EQ(windowTitlesOf(editor), (std::vector<std::string>{"Editor one", "Editor two"}));
    ASSERT_TRUE(running(terminal));
    EXPECT_EQ(running(otherTerminal), running(terminal));
    EXPECT_EQ(withBundleIdentifier("xterm").size(), 1u);
    EXPECT_EQ(windowTitlesOf(running(terminal)),
              (std::vector<std::string>{"Grouped xterm one", "Grouped xterm two"}));

    // The process standing for it ends: the other carries on as the editor.
    ::kill(first.pid(), SIGKILL);
    ASSERT_TRUE(eventually([&] { return !concerning(launched, second.pid()).empty(); }));
    EXPECT_EQ(concerning(terminated, first.pid()), std::vector{editor});
    const auto carriedOn = running(second.pid());
    ASSERT_TRUE(carriedOn);
    EXPECT_EQ(carriedOn->localizedName(), "Editor");
    EXPECT_TRUE(eventually(
        [&] { return windowTitlesOf(carriedOn) == std::vector<std::string>{"Editor two"}; }));
}

// The real editor, whose settings entry starts the same program and sorts
// before its own entry.
TEST_F(WorkspaceOnDesktopTest, MousepadIsOfferedAsMousepadNotAsItsSettings) {
    for (const char* id : {"org.xfce.mousepad-settings.desktop", "org.xfce.mousepad.desktop"}) {
        const auto installed = std::filesystem::path("/usr/share/applications") / id;
        ASSERT_TRUE(std::filesystem::exists(installed)) << "mousepad is not installed";
        std::filesystem::create_directories(tree.root() / DesktopEntryTestTree::system);
        std::filesystem::copy_file(installed, tree.root() / DesktopEntryTestTree::system / id);
    }
    // Without a session bus of its own, it would hand the window to another
    // test's editor.
    environment.set("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const pid_t editor = start({"mousepad", "--disable-server"});
    openDesktop();
    ASSERT_TRUE(eventually([&] { return running(editor) != nullptr; }, 15));
    EXPECT_EQ(running(editor)->localizedName(), "Mousepad");
    EXPECT_EQ(running(editor)->bundleIdentifier(), "org.xfce.mousepad");
}

// A panel, a desktop drawn by a program, a window kept out of the taskbar:
// their processes are no regular applications, whatever entry runs them.
TEST_F(WorkspaceOnDesktopTest, AProcessShowingOnlyAccessoryWindowsIsNoRegularApplication) {
    install("org.example.Panel.desktop", "Panel", "x11_test_client");
    install("tint2.desktop", "Panel", "tint2");
    openDesktop();
    recordLaunchesAndTerminations();
    TestClient dock;
    dock.setWindowKind("dock");
    dock.create("dock", "Accessory dock");
    dock.setWindowKind("skip-taskbar");
    dock.create("tool", "Accessory tool");
    TestClient background;
    background.setWindowKind("desktop");
    background.create("desktop", "Accessory desktop");
    const pid_t panel = start({"tint2"});
    for (const pid_t pid : {dock.pid(), background.pid(), panel}) {
        ASSERT_TRUE(eventually([&] { return running(pid) != nullptr; }, 10)) << pid;
        EXPECT_EQ(running(pid)->activationPolicy(), platform::ActivationPolicy::accessory);
        EXPECT_FALSE(running(pid)->bundleIdentifier());
        EXPECT_FALSE(running(pid)->bundleURL());
    }
    EXPECT_TRUE(withBundleIdentifier("org.example.Panel").empty());
    EXPECT_TRUE(withBundleIdentifier("tint2").empty());

    // An ordinary window makes it the application of its entry.
    const auto accessory = running(dock.pid());
    dock.setWindowKind("normal");
    dock.create("main", "Accessory no more");
    ASSERT_TRUE(eventually([&] { return running(dock.pid()) != accessory; }));
    const auto regular = running(dock.pid());
    ASSERT_TRUE(regular);
    EXPECT_EQ(regular->bundleIdentifier(), "org.example.Panel");
    EXPECT_EQ(regular->activationPolicy(), platform::ActivationPolicy::regular);
    EXPECT_TRUE(accessory->isTerminated());
    EXPECT_EQ(concerning(terminated, dock.pid()), std::vector{accessory});
    EXPECT_EQ(concerning(launched, dock.pid()).back(), regular);
    EXPECT_EQ(windowTitlesOf(regular).size(), 3u);
}

}  // namespace
}  // namespace x11test
