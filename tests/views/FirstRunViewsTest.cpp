// The first-run pages and the About window as Qt draws them: texts in
// their order, names a screen reader reads, and controls that follow the
// models.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>

#include "app/SpineTestSupport.h"
#include "firstrun/AboutCoordinator.h"
#include "views/FirstRunContentViews.h"
#include "views/ListWindowWidget.h"
#include "views/PermissionRequestWidget.h"
#include "views/QtContentView.h"
#include "views/QtImages.h"

namespace viewtest {
namespace {

using tarnwick::PermissionRequestView;

class NoCoordinator final : public PermissionRequestView::Coordinator {};

class FinishCounter final : public tarnwick::OnboardWindowInstructionsView::Coordinator {
  public:
    void finish() override { ++finished; }
    int finished = 0;
};

QWidget* widgetOf(const std::shared_ptr<platform::ContentView>& content) {
    return dynamic_cast<platform::qt::QtContentView&>(*content).widget();
}

// The labels' texts, top to bottom and left to right.
QStringList textsOf(QWidget* root) {
    root->adjustSize();
    auto labels = root->findChildren<QLabel*>();
    std::stable_sort(labels.begin(), labels.end(), [root](QLabel* a, QLabel* b) {
        const QPoint pa = a->mapTo(root, QPoint()), pb = b->mapTo(root, QPoint());
        return pa.y() != pb.y() ? pa.y() < pb.y() : pa.x() < pb.x();
    });
    QStringList texts;
    for (auto* label : labels) {
        if (!label->text().isEmpty())
            texts << label->text();
    }
    return texts;
}

QString accessibleName(QWidget* widget) {
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

class FirstRunViewsTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    void launchWithoutPermission() {
        desktop.accessibility().setProcessTrusted(false);
        model = tarnwick::PermissionRequestViewModel::make();
        request = std::make_unique<PermissionRequestView>(model, coordinator);
    }

    NoCoordinator coordinator;
    std::shared_ptr<tarnwick::PermissionRequestViewModel> model;
    std::unique_ptr<PermissionRequestView> request;
};

}  // namespace

TEST_F(FirstRunViewsTest, ThePermissionStepsFollowTheModelAndNameTheirControls) {
    launchWithoutPermission();
    platform::qt::PermissionRequestWidget widget(*request);
    EXPECT_EQ(
        textsOf(&widget),
        (QStringList{"Step 1", "Tarnwick needs accessibility permissions to properly function.",
                     "Step 2"}));
    EXPECT_TRUE(widget.findChildren<QLabel*>().at(0)->font().italic());
    EXPECT_EQ(accessibleName(widget.permissionButton()), "Accessibility Permission");
    EXPECT_EQ(accessibleName(widget.relaunchButton()), "Relaunch App");
    EXPECT_EQ(accessibleName(widget.seal()), "Permission missing");
    EXPECT_FALSE(widget.relaunchButton()->isEnabled());

    widget.permissionButton()->click();
    EXPECT_EQ(desktop.accessibility().lastTrustPrompt(), false);  // the first round followed
    desktop.accessibility().setProcessTrusted(true);
    desktop.loop().advance(0.5);
    EXPECT_EQ(accessibleName(widget.seal()), "Permission granted");
    EXPECT_TRUE(widget.relaunchButton()->isEnabled());

    widget.relaunchButton()->click();
    EXPECT_EQ(desktop.processLauncher().launches().size(), 1u);
    EXPECT_EQ(desktop.application().terminateCount(), 1u);
}

TEST_F(FirstRunViewsTest, ThePanelsPermissionTreeHoldsTheSameStepsWhenTheRequestIsGiven) {
    launchWithoutPermission();
    quillbox::Signal<> changed;
    tarnwick::ListWindowView::Content content;
    content.tree = tarnwick::ListWindowView::Tree::permission;
    class NoRows final : public tarnwick::ListWindowView::ListRow::Coordinator {
        void raiseWindow(const tarnwick::ListWindowView::WindowRef&) override {}
        void closeWindow(const tarnwick::ListWindowView::WindowRef&) override {}
        void toggleMinimized(const tarnwick::ListWindowView::WindowRef&) override {}
        void toggleFullScreen(const tarnwick::ListWindowView::WindowRef&) override {}
    } rows;
    platform::qt::ListWindowWidget panel([&] { return content; }, changed, rows, nullptr,
                                         request.get());
    auto* steps = dynamic_cast<platform::qt::PermissionRequestWidget*>(panel.tree());
    ASSERT_NE(steps, nullptr);
    EXPECT_FALSE(steps->relaunchButton()->isEnabled());
}

TEST_F(FirstRunViewsTest, ThePagesShowTheirTextsInOrderAndOkEndsOnboardingOneTurnLater) {
    launchWithoutPermission();
    tarnwick::OnboardWindowPermissionsView permissions(model, coordinator);
    const auto first = platform::qt::makePermissionsPageContentView(permissions);
    EXPECT_EQ(textsOf(widgetOf(first)).mid(0, 4),
              (QStringList{"Welcome to Tarnwick!", "Finder's windows at your mousetip",
                           "Let's get started...", "Step 1"}));
    EXPECT_NE(widgetOf(first)->findChild<platform::qt::PermissionRequestWidget*>(), nullptr);

    auto counter = std::make_shared<FinishCounter>();
    tarnwick::OnboardWindowInstructionsView instructions("⌃⌥⇧", counter);
    const auto second = platform::qt::makeInstructionsPageContentView(instructions);
    EXPECT_EQ(textsOf(widgetOf(second)),
              (QStringList{"To activate Tarnwick, you simply need to\ninvoke the following "
                           "keyboard shortcut:\n⌃⌥⇧",
                           "You can change the shortcut in the Settings menu"}));
    auto* ok = widgetOf(second)->findChild<QPushButton*>();
    ASSERT_NE(ok, nullptr);
    EXPECT_EQ(accessibleName(ok), "OK");
    ok->click();
    EXPECT_EQ(counter->finished, 0);
    desktop.loop().runOneTurn();
    EXPECT_EQ(counter->finished, 1);
}

TEST_F(FirstRunViewsTest, AboutShowsNameVersionAuthorAndCopyrightAndTheIconComesInEverySize) {
    tarnwick::AboutWindowView view{platform::Image::resource("AppIcon"),
                                   "Tarnwick",
                                   "0.1.0",
                                   "7",
                                   "Tarnwick contributors (Harrowmere)",
                                   std::nullopt,
                                   "Copyright © 2026 Harrowmere. All rights reserved."};
    const auto about = platform::qt::makeAboutContentView(view);
    EXPECT_EQ(
        textsOf(widgetOf(about)),
        (QStringList{"Tarnwick", "v0.1.0 (7)", "Developed by Tarnwick contributors (Harrowmere)",
                     "Copyright © 2026 Harrowmere. All rights reserved."}));
    auto* author = widgetOf(about)->findChild<QLabel*>(QStringLiteral("authorLine"));
    EXPECT_EQ(author->textFormat(), Qt::PlainText);

    view.developerNameLink = "https://harrowmere.example";
    const auto linked = platform::qt::makeAboutContentView(view);
    author = widgetOf(linked)->findChild<QLabel*>(QStringLiteral("authorLine"));
    EXPECT_EQ(author->textFormat(), Qt::MarkdownText);
    EXPECT_TRUE(author->openExternalLinks());

    const auto sizes = platform::qt::iconFor(platform::Image::resource("AppIcon")).availableSizes();
    for (const int size : {16, 24, 32, 48, 64, 128, 256, 512})
        EXPECT_TRUE(sizes.contains(QSize(size, size))) << size;
}

}  // namespace viewtest
