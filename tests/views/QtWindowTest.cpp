#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <memory>
#include <vector>

#include "QtTestSupport.h"
#include "RecordingWindowDelegate.h"
#include "platform/WindowController.h"
#include "views/QtContentView.h"
#include "views/QtToolkit.h"
#include "views/QtWindow.h"
#include "views/QtWindowFlags.h"
#include "views/ScreenCoordinates.h"

using namespace platform;
using platform::qt::QtContentView;
using platform::qt::QtToolkit;
using platform::qt::QtWindow;
using platform::qt::ScreenCoordinates;

namespace {

std::shared_ptr<QtContentView> contentOfSize(int width, int height) {
    auto* widget = new QWidget;
    widget->setFixedSize(width, height);
    return std::make_shared<QtContentView>(widget);
}

int primaryScreenHeight() {
    return QGuiApplication::primaryScreen()->geometry().height();
}

}  // namespace

TEST(ScreenCoordinates, ConvertsBetweenTopLeftPixelsAndBottomLeftPoints) {
    const ScreenCoordinates screen(QRect(0, 0, 1280, 800));
    EXPECT_EQ(screen.toBottomLeft(QRect(100, 50, 200, 100)), (CGRect{{100, 650}, {200, 100}}));
    EXPECT_EQ(screen.topLeftFor({100, 650}, 100), QPoint(100, 50));
    // Off the screen's edges stays off them: nothing is clamped.
    EXPECT_EQ(screen.toBottomLeft(QRect(-50, 780, 200, 100)), (CGRect{{-50, -80}, {200, 100}}));
    EXPECT_EQ(screen.topLeftFor({-50, -80}, 100), QPoint(-50, 780));
    // Half points round to whole pixels.
    EXPECT_EQ(screen.topLeftFor({10.5, 0.4}, 100), QPoint(11, 700));

    const ScreenCoordinates shifted(QRect(200, 100, 1000, 700));
    EXPECT_EQ(shifted.toBottomLeft(QRect(200, 700, 10, 100)), (CGRect{{0, 0}, {10, 100}}));
}

// What the windows of every toolkit promise, the window tests check on Qt's
// and the simulated ones; these are the widgets' own.

TEST(QtWindow, TheWidgetSitsWhereTheBottomLeftFrameSaysAndFollowsItsContent) {
    QtToolkit toolkit;
    auto panel = toolkit.makePanel();
    panel->setContentView(contentOfSize(200, 100));
    panel->setFrameOrigin({100, 50});
    auto* widget = static_cast<QtWindow&>(*panel).widget();
    EXPECT_EQ(widget->pos(), QPoint(100, primaryScreenHeight() - 50 - 100));

    panel->setContentView(contentOfSize(300, 40));  // the old content goes, the size follows
    EXPECT_EQ(panel->frame().size, (CGSize{300, 40}));
}

TEST(QtWindow, TheWidgetShowsTheAlphaAsFarAsItCan) {
    QtToolkit toolkit;
    auto window = toolkit.makePanel();
    window->setAlphaValue(0.004);
    EXPECT_NEAR(static_cast<QtWindow&>(*window).widget()->windowOpacity(), 0.004, 1.0 / 255);
    window->setAlphaValue(-0.5);
    EXPECT_DOUBLE_EQ(static_cast<QtWindow&>(*window).widget()->windowOpacity(), 0.0);
}

TEST(QtWindow, TheWindowManagersCloseButtonTellsTheDelegateToo) {
    QtToolkit toolkit;
    auto window = toolkit.makeWindow(4099);
    window->setContentView(contentOfSize(50, 50));
    viewtest::RecordingWindowDelegate delegate;
    window->setDelegate(&delegate);
    WindowController(window).showWindow();
    static_cast<QtWindow&>(*window).widget()->close();
    EXPECT_EQ(delegate.closed.size(), 1u);
    EXPECT_FALSE(window->isVisible());
}

TEST(QtWindow, StyleAndLevelBecomeWindowFlags) {
    using platform::qt::windowFlagsFor;
    const auto panel = windowFlagsFor(true, windowStyle::defaultMask, windowLevel::normal);
    EXPECT_EQ(panel & Qt::WindowType_Mask, Qt::Tool);
    EXPECT_TRUE(panel.testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(panel.testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(panel.testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_TRUE(panel.testFlag(Qt::BypassWindowManagerHint));

    // Settings: titled, closable, full-size content, floating.
    const auto settings = windowFlagsFor(false, 4099, windowLevel::floating);
    EXPECT_EQ(settings & Qt::WindowType_Mask, Qt::Window);
    EXPECT_TRUE(settings.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(settings.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_TRUE(settings.testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(settings.testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_FALSE(settings.testFlag(Qt::BypassWindowManagerHint));

    EXPECT_TRUE(
        windowFlagsFor(false, windowStyle::borderless, 0).testFlag(Qt::FramelessWindowHint));
}

TEST(QtWindow, RestylingAShownWindowGivesItsWidgetTheNewFlags) {
    QtToolkit toolkit;
    auto window = toolkit.makeWindow(windowStyle::titled);
    window->setContentView(contentOfSize(80, 60));
    window->orderFront();
    window->setLevel(windowLevel::floating);
    EXPECT_TRUE(
        static_cast<QtWindow&>(*window).widget()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
}

TEST(QtWindow, ContentOutlivesTheWindowOnlyWhileItsViewIsHeld) {
    QPointer<QLabel> label = new QLabel("rows");
    auto content = std::make_shared<QtContentView>(label.data());
    {
        QtToolkit toolkit;
        auto window = toolkit.makeWindow(windowStyle::titled);
        window->setContentView(content);
        EXPECT_EQ(label->window(), static_cast<QtWindow&>(*window).widget());
    }
    EXPECT_TRUE(label.isNull());  // the window's widget tree took it along
    EXPECT_EQ(content->widget(), nullptr);
}
