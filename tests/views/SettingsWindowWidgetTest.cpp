// The Settings window as Qt draws it: its tabs with their symbols, the rows
// and the names a screen reader reads, controls that follow the models and
// act on them, the keyboard, and pictures of both tabs in light and dark.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>

#include "app/RootCoordinator.h"
#include "app/SpineTestSupport.h"
#include "settings/SettingsCoordinator.h"
#include "settings/SettingsKeys.h"
#include "views/HiddenAppsWidget.h"
#include "views/QtTestSupport.h"
#include "views/RecorderControlWidget.h"
#include "views/SettingsWindowWidget.h"
#include "views/ShortcutViewWidget.h"

namespace viewtest {
namespace {

using tarnwick::RootCoordinator;
using tarnwick::SettingsCoordinator;

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x2B, 0x2B, 0x2D));
    palette.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
    palette.setColor(QPalette::Button, QColor(0x3A, 0x3A, 0x3C));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, QColor(0xEC, 0xEC, 0xEC));
    palette.setColor(QPalette::Light, QColor(0x50, 0x50, 0x52));
    palette.setColor(QPalette::Mid, QColor(0x30, 0x30, 0x32));
    palette.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x18));
    return palette;
}

void saveArtifact(QWidget& widget, const QString& name) {
    const QDir folder(QStringLiteral(TARNWICK_ARTIFACTS_DIR));
    QDir().mkpath(folder.path());
    EXPECT_TRUE(widget.grab().save(folder.filePath(name))) << name.toStdString();
}

std::string accessibleName(QWidget* widget) {
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).toStdString();
}

void press(QWidget* focused, int key) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(focused, &down);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(focused, &up);
}

class SettingsWindowWidgetTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    SettingsWindowWidgetTest() {
        RootCoordinator::ChildFactories factories;
        factories.settings = SettingsCoordinator::childFactory();
        root = RootCoordinator::make(std::move(factories));
    }

    platform::qt::SettingsWindowWidget& show() {
        root->showSettings();
        auto& coordinator = dynamic_cast<SettingsCoordinator&>(*root->settingsCoordinator());
        widget = std::make_unique<platform::qt::SettingsWindowWidget>(coordinator.view());
        widget->show();
        QCoreApplication::processEvents();
        return *widget;
    }

    // Lets Qt's events and the store's announcements reach the widget,
    // and what they post in turn.
    void settle() {
        QCoreApplication::processEvents();
        desktop.loop().runUntilIdle();
        QCoreApplication::processEvents();
    }

    quillbox::DefaultsManager& defaults() { return quillbox::DefaultsManager::shared(); }

    std::shared_ptr<RootCoordinator> root;
    std::unique_ptr<platform::qt::SettingsWindowWidget> widget;
};

TEST_F(SettingsWindowWidgetTest, TwoTabsWithTheirSymbolsHoldTheRowsUnderTheirNames) {
    auto& settings = show();
    auto* tabs = settings.tabs();
    ASSERT_TRUE(tabs);
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(0), "General");
    EXPECT_EQ(tabs->tabText(1), "Updates");
    EXPECT_EQ(tabs->tabIcon(0).name(), "gear");
    EXPECT_EQ(tabs->tabIcon(1).name(), "sparkle");
    EXPECT_GE(tabs->width(), 350);
    EXPECT_GE(tabs->height(), 100);

    EXPECT_TRUE(tabs->widget(0)->isAncestorOf(settings.shortcutField()));
    EXPECT_TRUE(tabs->widget(0)->isAncestorOf(settings.launchAtLoginSwitch()));
    EXPECT_TRUE(tabs->widget(0)->isAncestorOf(settings.hiddenApps()));
    EXPECT_TRUE(tabs->widget(1)->isAncestorOf(settings.automaticUpdatesSwitch()));
    EXPECT_TRUE(tabs->widget(1)->isAncestorOf(settings.channelPicker()));
    EXPECT_TRUE(tabs->widget(1)->isAncestorOf(settings.checkNowButton()));

    // Every control has a name; the rows' labels name their controls.
    EXPECT_EQ(accessibleName(settings.launchAtLoginSwitch()), "Launch at Login");
    EXPECT_EQ(accessibleName(settings.hiddenApps()->disclosure()), "Hidden Apps");
    EXPECT_EQ(accessibleName(settings.automaticUpdatesSwitch()), "Automatically Check for Updates");
    // A picker reads its choice as its name, and is named by its label.
    EXPECT_EQ(settings.channelPicker()->accessibleName(), "Release Channel");
    EXPECT_EQ(accessibleName(settings.checkNowButton()), "Check Now");
    EXPECT_EQ(accessibleName(settings.shortcutField()->recorderControl()), "⌃⌥⇧");
    QStringList labelled;
    for (auto* label : settings.findChildren<QLabel*>()) {
        if (label->buddy())
            labelled << label->text() + " " + label->buddy()->metaObject()->className();
    }
    labelled.sort();
    EXPECT_EQ(labelled, (QStringList{"Activation Shortcut platform::qt::RecorderControlWidget",
                                     "Launch at Login QCheckBox", "Release Channel QComboBox"}));
}

TEST_F(SettingsWindowWidgetTest, BelowTheTabbedVersionOneStackWithoutHiddenApps) {
    desktop.application().setOperatingSystemVersion({14, 0, 0});
    auto& settings = show();
    EXPECT_FALSE(settings.tabs());
    EXPECT_FALSE(settings.hiddenApps());
    ASSERT_TRUE(settings.checkNowButton());
    const int shortcutTop = settings.shortcutField()->mapTo(&settings, QPoint()).y();
    const int checkTop = settings.checkNowButton()->mapTo(&settings, QPoint()).y();
    EXPECT_LT(shortcutTop, checkTop);
    saveArtifact(settings, QStringLiteral("settings-single-stack-light.png"));
}

TEST_F(SettingsWindowWidgetTest, HiddenAppsOpenToTheirRowsAndUnhideBringsOneBack) {
    root->appsMonitor().setGrouping("com.example.Preview", tarnwick::AppGrouping::hidden);
    root->appsMonitor().setGrouping("com.example.Notes", tarnwick::AppGrouping::hidden);
    auto& settings = show();
    auto* hidden = settings.hiddenApps();
    EXPECT_FALSE(hidden->isOpen()) << "closed at first";
    EXPECT_EQ(hidden->disclosure()->arrowType(), Qt::RightArrow);
    hidden->disclosure()->click();
    EXPECT_TRUE(hidden->list()->isVisible());
    EXPECT_EQ(hidden->disclosure()->arrowType(), Qt::DownArrow);

    auto buttons = hidden->unhideButtons();
    ASSERT_EQ(buttons.size(), 2u);
    EXPECT_EQ(buttons[0]->text(), "Unhide");
    EXPECT_EQ(buttons[0]->accessibleDescription(), "Notes");
    EXPECT_EQ(buttons[1]->accessibleDescription(), "Preview");

    buttons[0]->click();
    settle();
    EXPECT_EQ(defaults().getValue(tarnwick::hiddenApps),
              (std::set<std::string>{"com.example.Preview"}));
    buttons = hidden->unhideButtons();
    ASSERT_EQ(buttons.size(), 1u);
    EXPECT_EQ(buttons[0]->accessibleDescription(), "Preview");

    // Emptied from outside: the box stays, with no rows.
    desktop.preferences().removeObject("harrowmere.hiddenApps");
    settle();
    EXPECT_TRUE(hidden->unhideButtons().empty());
    EXPECT_TRUE(hidden->list()->isVisible());
}

TEST_F(SettingsWindowWidgetTest, TheControlsFollowTheModelsAndActOnThem) {
    defaults().setValue(std::string("nightly"), tarnwick::releaseChannel);
    auto& settings = show();
    EXPECT_EQ(settings.channelPicker()->currentIndex(), -1) << "another word selects nothing";
    EXPECT_EQ(settings.channelPicker()->itemText(0), "Official Release");
    EXPECT_EQ(settings.channelPicker()->itemText(1), "Beta");
    settings.channelPicker()->setCurrentIndex(1);
    Q_EMIT settings.channelPicker()->activated(1);
    EXPECT_EQ(defaults().getValue(tarnwick::releaseChannel), "staging");

    desktop.updater().setAutomaticallyChecksForUpdates(true);
    settle();
    desktop.preferences().setObject("harrowmere.releaseChannel", platform::PropertyList("default"));
    settle();
    EXPECT_TRUE(settings.automaticUpdatesSwitch()->isChecked());
    EXPECT_EQ(settings.channelPicker()->currentIndex(), 0);
    settings.automaticUpdatesSwitch()->click();
    EXPECT_FALSE(desktop.updater().automaticallyChecksForUpdates());

    auto* launch = settings.launchAtLoginSwitch();
    EXPECT_FALSE(launch->isChecked());
    launch->click();
    settle();
    EXPECT_TRUE(launch->isChecked());
    EXPECT_EQ(desktop.loginItemService().calls(), (std::vector<std::string>{"register"}));

    // While the service takes its time, the switch can't be changed.
    launch->click();
    desktop.loop().runOneTurn();
    QCoreApplication::processEvents();
    EXPECT_FALSE(launch->isEnabled());
    settle();
    EXPECT_TRUE(launch->isEnabled());
    EXPECT_FALSE(launch->isChecked());
}

TEST_F(SettingsWindowWidgetTest, ReturnAndSpacePressTheFocusedControlAndTabMovesOn) {
    auto& settings = show();
    settings.activateWindow();
    ASSERT_TRUE(runQtUntil([&] { return settings.isActiveWindow(); }));
    auto* launch = settings.launchAtLoginSwitch();
    launch->setFocus();
    press(launch, Qt::Key_Return);
    EXPECT_TRUE(runQtUntil([&] {
        desktop.loop().runUntilIdle();
        return desktop.loginItemService().calls() == std::vector<std::string>{"register"};
    }));
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::focusWidget(), launch) << "the focus stays on the switch";

    auto* disclosure = settings.hiddenApps()->disclosure();
    press(launch, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), disclosure)
        << "Tab goes from the switch to Hidden Apps, not to "
        << QApplication::focusWidget()->metaObject()->className() << " "
        << QApplication::focusWidget()->objectName().toStdString();
    press(disclosure, Qt::Key_Space);
    EXPECT_TRUE(runQtUntil([&] { return settings.hiddenApps()->list()->isVisible(); }));
    press(disclosure, Qt::Key_Return);
    EXPECT_TRUE(runQtUntil([&] { return !settings.hiddenApps()->list()->isVisible(); }));
}

TEST_F(SettingsWindowWidgetTest, BothTabsInLightAndDark) {
    root->appsMonitor().setGrouping("com.example.Notes", tarnwick::AppGrouping::hidden);
    auto& settings = show();
    settings.hiddenApps()->disclosure()->click();
    QCoreApplication::processEvents();
    saveArtifact(settings, QStringLiteral("settings-general-light.png"));
    settings.tabs()->setCurrentIndex(1);
    QCoreApplication::processEvents();
    saveArtifact(settings, QStringLiteral("settings-updates-light.png"));

    const QPalette light = QApplication::palette();
    QApplication::setPalette(darkPalette());
    settle();  // the recorder takes its new look on the loop
    EXPECT_NE(settings.shortcutField()
                  ->recorderControl()
                  ->control()
                  ->style()
                  ->look()
                  .bezelNormalLeft.name.find("darkaqua"),
              std::string::npos);
    saveArtifact(settings, QStringLiteral("settings-updates-dark.png"));
    settings.tabs()->setCurrentIndex(0);
    QCoreApplication::processEvents();
    saveArtifact(settings, QStringLiteral("settings-general-dark.png"));
    const QImage picture = settings.grab().toImage();
    EXPECT_LT(picture.pixelColor(2, 2).lightness(), 80) << "the window's background is dark";
    QApplication::setPalette(light);
}

}  // namespace
}  // namespace viewtest
