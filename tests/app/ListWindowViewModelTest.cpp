#include "app/ListWindowModelDesktop.h"
#include "listwindow/ListWindowViewModel.h"

namespace tarnwick::testing {
namespace {

using Strings = std::vector<std::string>;
using Error = InteractionController::Error;

class ListWindowViewModelTest : public ListWindowModelDesktop {};

TEST_F(ListWindowViewModelTest, StartsOnTheFileManagerWithItsWindowsAndTheGroups) {
    EXPECT_EQ(titles(), (Strings{"Pictures", "Downloads", "Documents"}));
    EXPECT_EQ(windowsState().selectedApp, finder);
    EXPECT_TRUE(sameRunningApps(windowsState().apps, monitor->runningApps()));
    EXPECT_EQ(model->observers().size(), 1u);
    // The file manager's element was made past the cache.
    EXPECT_TRUE(monitor->appElementCache().empty());
    EXPECT_TRUE(output.lines().empty());
}

TEST_F(ListWindowViewModelTest, OnlyTitledOrdinaryWindowsAreListedMinimisedOnesToo) {
    auto untitled = SimWindowSetup::titled("");
    untitled.title.reset();
    addWindow(textEdit, untitled);
    addWindow(textEdit, SimWindowSetup::titled(""));
    auto sheet = SimWindowSetup::titled("Save");
    sheet.role = "AXSheet";
    addWindow(textEdit, sheet);
    auto minimised = SimWindowSetup::titled("Draft");
    minimised.minimized = true;
    addWindow(textEdit, minimised);
    const auto unreadable = addWindow(textEdit, SimWindowSetup::titled("Unreadable"));
    desktop.accessibility().injectFault(SimAXCall::copyAttributeValue,
                                        SimAXFault::error(platform::axError::cannotComplete),
                                        unreadable, "AXRole");
    model->selectApp(textEdit);
    EXPECT_EQ(titles(), (Strings{"Draft", "Letter.rtf", "Notes.txt"}));
}

TEST_F(ListWindowViewModelTest, SelectingAnEndedAppChangesNothing) {
    desktop.workspace().terminate(textEdit->processIdentifier());
    settle();
    const auto observer = model->observers().front();
    model->selectApp(textEdit);
    EXPECT_EQ(changeCount, 0);
    EXPECT_EQ(model->app().runningApp, finder);
    EXPECT_EQ(model->observers().front(), observer);
    EXPECT_EQ(windowsState().selectedApp, finder);
}

TEST_F(ListWindowViewModelTest, AfterASelectionOnlyTheNewAppsNotificationsRefresh) {
    model->selectApp(preview);
    EXPECT_EQ(titles(), (Strings{"Photo.jpg"}));
    EXPECT_EQ(desktop.accessibility().liveObserverCount(), 1u);
    changeCount = 0;

    addWindow(finder, SimWindowSetup::titled("Elsewhere"));
    settle();
    EXPECT_EQ(changeCount, 0);

    addWindow(preview, SimWindowSetup::titled("Scan.png"));
    settle();
    EXPECT_GE(changeCount, 1);
    EXPECT_EQ(titles(), (Strings{"Scan.png", "Photo.jpg"}));
}

TEST_F(ListWindowViewModelTest, AFailedSubscriptionListsOnceAndThenStopsFollowing) {
    desktop.accessibility().injectFault(SimAXCall::observerAddNotification,
                                        SimAXFault::error(platform::axError::cannotComplete),
                                        nullptr, "AXWindowCreated", 1);
    model->selectApp(preview);
    EXPECT_EQ(output.lines(), (Strings{"Error observing: axError(AXError.cannotComplete)"}));
    EXPECT_EQ(titles(), (Strings{"Photo.jpg"}));
    EXPECT_TRUE(model->observers().empty());

    changeCount = 0;
    addWindow(preview, SimWindowSetup::titled("Scan.png"));
    settle();
    EXPECT_EQ(changeCount, 0);
}

TEST_F(ListWindowViewModelTest, OnlyTheListedCausesRefreshTheList) {
    // Launches, terminations, regrouping and preference changes don't.
    launchOrdinaryApp(480, "Maps");
    desktop.workspace().terminate(notes->processIdentifier());
    settle();
    monitor->setGrouping("com.example.TextEdit", AppGrouping::favorite);
    EXPECT_EQ(changeCount, 0);
    // The snapshot still has the applications of the last refresh.
    EXPECT_EQ(names(windowsState().apps, AppGrouping::track),
              (Strings{"Finder", "Notes", "Preview", "Tarnwick", "TextEdit"}));

    // A notification of the selected application does, and each assignment
    // tells, even of the same content.
    desktop.accessibility().postNotification(
        desktop.accessibility().applicationElement(finder->processIdentifier()),
        "AXMainWindowChanged");
    settle();
    EXPECT_EQ(changeCount, 1);
    model->refreshWindows();
    EXPECT_EQ(changeCount, 2);
    EXPECT_EQ(names(windowsState().apps, AppGrouping::track),
              (Strings{"Finder", "Maps", "Preview", "Tarnwick"}));
    EXPECT_EQ(names(windowsState().apps, AppGrouping::favorite), (Strings{"TextEdit"}));
}

// A list shown only at times reads nothing for windows nobody sees, and
// gathers the notifications of a window that opens into one refresh.
TEST_F(ListWindowViewModelTest, AListShownAtTimesFollowsNotificationsOnlyWhileShown) {
    bool shown = false;
    model->refreshOnNotificationsOnlyWhile([&] { return shown; });
    changeCount = 0;
    addWindow(finder, SimWindowSetup::titled("Unseen"));
    settle();
    EXPECT_EQ(changeCount, 0);
    EXPECT_EQ(titles(), (Strings{"Pictures", "Downloads", "Documents"}));
    model->catchUp();
    EXPECT_EQ(changeCount, 1);
    EXPECT_EQ(titles(), (Strings{"Unseen", "Pictures", "Downloads", "Documents"}));
    model->catchUp();
    EXPECT_EQ(changeCount, 1);

    shown = true;
    desktop.loop().advance(1);
    addWindow(finder, SimWindowSetup::titled("First"));
    settle();
    EXPECT_EQ(changeCount, 2);
    addWindow(finder, SimWindowSetup::titled("Second"));
    addWindow(finder, SimWindowSetup::titled("Third"));
    settle();
    EXPECT_EQ(changeCount, 2);
    desktop.loop().advance(ListWindowViewModel::notificationRefreshInterval);
    EXPECT_EQ(changeCount, 3);
    EXPECT_EQ(titles().front(), "Third");

    // A refresh that falls due after the list was hidden waits for the next
    // showing.
    addWindow(finder, SimWindowSetup::titled("Fourth"));
    settle();
    shown = false;
    desktop.loop().advance(1);
    EXPECT_EQ(changeCount, 3);
    model->catchUp();
    EXPECT_EQ(changeCount, 4);
    EXPECT_EQ(titles().front(), "Fourth");
}

TEST_F(ListWindowViewModelTest, AMissingPermissionIsAnErrorUntilARefreshSucceeds) {
    desktop.accessibility().setProcessTrusted(false);
    model->refreshWindows();
    ASSERT_TRUE(std::holds_alternative<ErrorState>(model->state()));
    EXPECT_EQ(std::get<ErrorState>(model->state()).error, Error::needPermission());

    desktop.accessibility().setProcessTrusted(true);
    model->refreshWindows();
    EXPECT_EQ(titles(), (Strings{"Pictures", "Downloads", "Documents"}));
}

TEST_F(ListWindowViewModelTest, TheSelectedAppEndingShowsOnlyAtTheNextRefresh) {
    desktop.workspace().terminate(finder->processIdentifier());
    settle();
    EXPECT_EQ(changeCount, 0);
    EXPECT_EQ(windowsState().windows.size(), 3u);

    model->refreshWindows();
    ASSERT_TRUE(std::holds_alternative<ErrorState>(model->state()));
    EXPECT_EQ(std::get<ErrorState>(model->state()).error,
              Error::axError(corvane::AXError::invalidUIElement));
}

TEST_F(ListWindowViewModelTest, TheSelectedAppStartedAgainAfterItEndedIsFollowed) {
    // Another process of the same application while the selected one runs
    // changes nothing.
    const auto finderInfo = [](pid_t pid) {
        return appInfo(pid, "Finder", ListWindowViewModel::finderBundleIdentifier,
                       "/System/Library/CoreServices/Finder.app");
    };
    desktop.workspace().launch(finderInfo(310));
    settle();
    EXPECT_EQ(windowsState().selectedApp, finder);

    desktop.workspace().terminate(finder->processIdentifier());
    settle();
    model->refreshWindows();
    ASSERT_TRUE(std::holds_alternative<ErrorState>(model->state()));

    // An unrelated launch doesn't take the selection; the application
    // started again does, with its windows, and they are followed.
    launchOrdinaryApp(480, "Maps");
    settle();
    EXPECT_TRUE(std::holds_alternative<ErrorState>(model->state()));
    const auto again = desktop.workspace().launch(finderInfo(311));
    addWindow(again, SimWindowSetup::titled("Home"));
    settle();
    EXPECT_EQ(windowsState().selectedApp, again);
    EXPECT_EQ(titles(), (Strings{"Home"}));
    addWindow(again, SimWindowSetup::titled("Music"));
    settle();
    EXPECT_EQ(titles(), (Strings{"Music", "Home"}));
}

TEST_F(ListWindowViewModelTest, NotificationsAfterTheModelIsGoneAreIgnored) {
    addWindow(finder, SimWindowSetup::titled("Late"));  // delivery under way
    model.reset();
    settle();
    EXPECT_EQ(desktop.accessibility().liveObserverCount(), 0u);
}

using ListWindowViewModelDeathTest = TrackingDesktop;

TEST_F(ListWindowViewModelDeathTest, ADesktopWithoutAFileManagerIsAFatalStop) {
    desktop.workspace().terminate(finder->processIdentifier());
    settle();
    auto monitor = std::make_shared<AppsMonitor>();
    auto controller = std::make_shared<InteractionController>(nullptr);
    EXPECT_DEATH({ ListWindowViewModel model(controller, monitor); },
                 "Can't find Finder \\(ironic naming though\\)");
}

}  // namespace
}  // namespace tarnwick::testing
