#include "AccessibilityFixture.h"

namespace corvane::testing {
namespace {

namespace ax = platform::axError;
using platform::sim::SimRunningApplication;

class ApplicationTest : public AccessibilityTest {
  protected:
    std::shared_ptr<SimRunningApplication> run(
        pid_t pid, std::optional<std::string> bundleID,
        platform::ActivationPolicy policy = platform::ActivationPolicy::regular) {
        SimRunningApplication::Info info;
        info.processIdentifier = pid;
        info.bundleIdentifier = std::move(bundleID);
        info.activationPolicy = policy;
        return workspace.addRunning(info);
    }
};
using ApplicationDeathTest = ApplicationTest;

std::vector<pid_t> pids(const std::vector<std::shared_ptr<Application>>& applications) {
    std::vector<pid_t> result;
    for (const auto& application : applications)
        result.push_back(application->pid());
    return result;
}

TEST_F(ApplicationTest,
       ConstructionFromRunningApplicationsSkipsProhibitedAndMatchesBundlesExactly) {
    const auto running = workspace.runningApplicationWithProcessIdentifier(appPid);
    EXPECT_EQ(*Application::fromRunningApplication(running), *application());
    EXPECT_EQ(Application::fromRunningApplication(run(-5, std::nullopt)), nullptr);
    EXPECT_EQ(Application::forProcessID(999), nullptr);
    ASSERT_NE(Application::forProcessID(appPid), nullptr);

    run(200, "com.example.Agent", platform::ActivationPolicy::prohibited);
    run(201, "com.example.files");
    run(202, "com.example.Files", platform::ActivationPolicy::prohibited);
    EXPECT_EQ(pids(Application::all()), (std::vector<pid_t>{appPid, 201}));
    EXPECT_EQ(pids(Application::allForBundleID("com.example.Files")),
              (std::vector<pid_t>{appPid, 202}));
    EXPECT_TRUE(Application::allForBundleID("COM.EXAMPLE.FILES").empty());

    workspace.terminate(appPid);
    EXPECT_EQ(Application::fromRunningApplication(running), nullptr);
}

TEST_F(ApplicationTest, WindowsInThePlatformsOrderOrNothing) {
    auto windows = application()->windows();
    ASSERT_TRUE(windows);
    ASSERT_EQ(windows->size(), 2u);
    EXPECT_EQ((*windows)[0]->getTitle(), "Documents");
    EXPECT_EQ((*windows)[1]->getTitle(), "Downloads");

    sim.setAttribute(sim.applicationElement(appPid), "AXWindows", CFValue(CFValue::Array{}));
    EXPECT_EQ(application()->windows()->size(), 0u);
    sim.setAttribute(sim.applicationElement(appPid), "AXWindows", CFValue(CFValue::Array{"x"}));
    EXPECT_THROW(application()->windows(), AXError);
    sim.removeAttribute(sim.applicationElement(appPid), "AXWindows");
    EXPECT_EQ(application()->windows(), std::nullopt);
}

TEST_F(ApplicationTest, ObserverCreationForAGoneProcessGivesNothing) {
    auto callback = [](Observer&, const std::shared_ptr<UIElement>&,
                       const UIElement::AXNotification&) {};
    EXPECT_NE(application()->createObserver(callback), nullptr);
    sim.endProcess(appPid);
    EXPECT_EQ(application()->createObserver(callback), nullptr);
}

TEST_F(ApplicationDeathTest, ObserverCreationStopsOnOtherErrors) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto callback = [](Observer&, const std::shared_ptr<UIElement>&,
                       const UIElement::AXNotification&) {};
    sim.injectFault(SimAXCall::observerCreate, SimAXFault::error(ax::cannotComplete));
    EXPECT_DEATH(application()->createObserver(callback),
                 "Caught unexpected error creating observer: AXError.CannotComplete");
}

TEST_F(ApplicationTest, WindowFromElementNeedsTheWindowRole) {
    SimWindowSetup sheetSpec;
    sheetSpec.role = "AXSheet";
    const auto sheet = sim.addWindow(appPid, sheetSpec);
    EXPECT_EQ(Application::Window::fromElement(UIElement(sheet)), nullptr);
    EXPECT_EQ(Application::Window::fromElement(*application()), nullptr);
    EXPECT_NE(Application::Window::fromElement(UIElement(documents)), nullptr);
    sim.injectFault(SimAXCall::copyAttributeValue, SimAXFault::error(ax::cannotComplete));
    EXPECT_EQ(Application::Window::fromElement(UIElement(documents)), nullptr);
}

TEST_F(ApplicationTest, QuietPropertiesFallBackWhateverHappens) {
    const auto w = window(documents);
    EXPECT_TRUE(w->isMain());
    EXPECT_EQ(w->title(), "Documents");
    EXPECT_EQ(w->frame(), (platform::CGRect{{100, 100}, {800, 600}}));
    EXPECT_EQ(w->size(), std::nullopt);  // declared as text; the platform gives a size
    EXPECT_NE(w->closeButton(), nullptr);
    EXPECT_EQ(w->id(), window(documents)->id());

    sim.injectFault(SimAXCall::copyAttributeValue, SimAXFault::value(CFValue(7)), documents,
                    "AXMain");
    sim.injectFault(SimAXCall::copyAttributeValue, SimAXFault::error(ax::cannotComplete), documents,
                    "AXTitle");
    EXPECT_FALSE(w->isMain());
    EXPECT_EQ(w->title(), std::nullopt);
    EXPECT_THROW(w->getTitle(), AXError);

    sim.endProcess(appPid);
    EXPECT_FALSE(w->isMinimized());
    EXPECT_EQ(w->zoomButton(), nullptr);
    EXPECT_TRUE(w->sections().empty());
}

TEST_F(ApplicationTest, ThrowingAccessorsTellAbsenceFromFailure) {
    const auto untitled = window(sim.addWindow(appPid, SimWindowSetup{}));
    EXPECT_EQ(untitled->getTitle(), "Unknown");
    EXPECT_EQ(untitled->title(), std::nullopt);
    EXPECT_EQ(*untitled->getParent(), *application());
    EXPECT_EQ(untitled->getChildren().size(), 3u);
    EXPECT_TRUE(untitled->getSections().empty());
    EXPECT_EQ(untitled->getProxy(), std::nullopt);
    sim.setAttribute(untitled->element(), "AXParent", CFValue("not an element"));
    EXPECT_THROW(untitled->getParent(), AXError);
}

}  // namespace
}  // namespace corvane::testing
