#include "app/TrackingDesktop.h"
#include "listwindow/InteractionController.h"
#include "support/StandardOutput.h"

namespace tarnwick::testing {
namespace {

using Error = InteractionController::Error;
using corvane::AXError;

class InteractionControllerTest : public TrackingDesktop {
  protected:
    std::shared_ptr<corvane::Application> fileManager() {
        return corvane::Application::fromRunningApplication(finder);
    }
    // Observes the file manager, counting the notifications heard.
    std::shared_ptr<corvane::Observer> observeFileManager() {
        return controller.observe(
            *fileManager(), [this](corvane::Observer&, const auto&, const auto& notification) {
                heard.push_back(notification.rawValue);
            });
    }
    template <typename Call>
    static std::optional<Error> errorOf(Call call) {
        try {
            call();
        } catch (const Error& error) {
            return error;
        }
        return std::nullopt;
    }

    InteractionController controller{nullptr};
    std::vector<std::string> heard;
    quillbox::CapturedOutput output;
};

TEST(InteractionControllerErrorTest, PrintsTheCaseWithTheCodesDebugTextAndShowsAGenericText) {
    EXPECT_EQ(Error::axError(AXError::cannotComplete).description(),
              "axError(AXError.cannotComplete)");
    EXPECT_EQ(Error::axError(AXError(1)).description(), "axError(AXError (Unknown error - 1)");
    EXPECT_EQ(Error::needPermission().description(), "needPermission");
    EXPECT_STREQ(Error::cannotCreateObserver().what(), "cannotCreateObserver");
    EXPECT_EQ(Error::cannotCreateObserver().localizedDescription(),
              "The operation couldn\u2019t be completed. "
              "(tarnwick.InteractionController.Error error 4.)");
}

TEST_F(InteractionControllerTest, ListsWindowsFrontToBackAnAbsentListAsEmptyAndAFailureAsAnError) {
    const auto app = fileManager();
    std::vector<std::string> titles;
    for (const auto& window : controller.windows(*app))
        titles.push_back(window->getTitle());
    EXPECT_EQ(titles, (std::vector<std::string>{"Pictures", "Downloads", "Documents"}));

    desktop.accessibility().injectFault(SimAXCall::copyAttributeValue,
                                        SimAXFault::error(platform::axError::noValue), nullptr,
                                        "AXWindows");
    EXPECT_TRUE(controller.windows(*app).empty());

    desktop.accessibility().injectFault(SimAXCall::copyAttributeValue,
                                        SimAXFault::error(platform::axError::cannotComplete),
                                        nullptr, "AXWindows");
    EXPECT_EQ(errorOf([&] { controller.windows(*app); }), Error::axError(AXError::cannotComplete));
}

TEST_F(InteractionControllerTest, AMissingPermissionIsFoundBeforeTheAppIsAsked) {
    const auto app = fileManager();
    desktop.accessibility().setProcessTrusted(false);
    const auto calls = desktop.accessibility().callCount();
    EXPECT_EQ(errorOf([&] { controller.windows(*app); }), Error::needPermission());
    EXPECT_EQ(desktop.accessibility().callCount(), calls);
    EXPECT_EQ(desktop.accessibility().lastTrustPrompt(), false);
}

TEST_F(InteractionControllerTest, NewWindowsAreFollowedAndOlderOnesArent) {
    auto& ax = desktop.accessibility();
    const auto observer = observeFileManager();
    const auto older = ax.windows(finder->processIdentifier()).back();
    ax.moveWindow(older, {10, 10});
    ax.setTitle(older, "Renamed");
    settle();
    EXPECT_TRUE(heard.empty());

    const auto added = ax.addWindow(finder->processIdentifier(), SimWindowSetup::titled("New"));
    settle();
    ax.moveWindow(added, {20, 20});
    ax.setTitle(added, "Newer");
    ax.setMinimized(added, true);
    ax.removeWindow(added);
    settle();
    EXPECT_EQ(heard, (std::vector<std::string>{"AXWindowCreated", "AXMainWindowChanged", "AXMoved",
                                               "AXTitleChanged", "AXWindowMiniaturized",
                                               "AXMainWindowChanged", "AXUIElementDestroyed"}));
    EXPECT_TRUE(output.lines().empty());
}

TEST_F(InteractionControllerTest, AFailedWindowSubscriptionOnlyPrints) {
    auto& ax = desktop.accessibility();
    const auto observer = observeFileManager();
    ax.injectFault(SimAXCall::observerAddNotification,
                   SimAXFault::error(platform::axError::cannotComplete), nullptr, "AXMoved");
    const auto added = ax.addWindow(finder->processIdentifier(), SimWindowSetup::titled("New"));
    settle();

    ASSERT_EQ(output.lines().size(), 1u);
    EXPECT_EQ(output.lines()[0], "Error observing " + corvane::UIElement(added).description() +
                                     ": AXError.CannotComplete");
    // The subscription before the failure stands; the one after was not tried.
    heard.clear();
    ax.setTitle(added, "Retitled");
    ax.removeWindow(added);
    settle();
    EXPECT_EQ(heard, (std::vector<std::string>{"AXUIElementDestroyed", "AXMainWindowChanged"}));
}

TEST_F(InteractionControllerTest, AFailedSubscriptionDropsTheObserverAndAnEndedAppCantBeObserved) {
    desktop.accessibility().injectFault(
        SimAXCall::observerAddNotification,
        SimAXFault::error(platform::axError::notificationUnsupported), nullptr,
        "AXMainWindowChanged");
    EXPECT_EQ(errorOf([&] { observeFileManager(); }),
              Error::axError(AXError::notificationUnsupported));
    EXPECT_EQ(desktop.accessibility().liveObserverCount(), 0u);

    const auto app = fileManager();
    desktop.accessibility().endProcess(finder->processIdentifier());
    EXPECT_EQ(errorOf([&] { controller.observe(*app, {}); }), Error::cannotCreateObserver());
}

}  // namespace
}  // namespace tarnwick::testing
