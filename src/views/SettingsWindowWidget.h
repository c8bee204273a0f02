#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "platform/Subscription.h"
#include "platform/Window.h"
#include "settings/SettingsWindowView.h"

class QCheckBox;
class QComboBox;
class QPushButton;
class QTabWidget;

namespace platform::qt {

class HiddenAppsWidget;
class ShortcutViewWidget;

// The Settings window's content, drawn from its view: tabs or one stack of
// labelled rows, redrawn whenever the preferences, the shortcut or the
// launch at login state change. Return, like Space, presses the focused
// button or switch and opens the focused picker; Control+W closes the
// window.
class SettingsWindowWidget final : public QWidget {
  public:
    explicit SettingsWindowWidget(tarnwick::SettingsWindowView& view, QWidget* parent = nullptr);

    // Null where the layout has no such part.
    QTabWidget* tabs() const { return tabs_; }
    ShortcutViewWidget* shortcutField() const { return shortcutField_; }
    QCheckBox* launchAtLoginSwitch() const { return launchAtLogin_; }
    HiddenAppsWidget* hiddenApps() const { return hiddenApps_; }
    QCheckBox* automaticUpdatesSwitch() const { return automaticUpdates_; }
    QComboBox* channelPicker() const { return channelPicker_; }
    QPushButton* checkNowButton() const { return checkNow_; }

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QWidget* makePage(const tarnwick::SettingsWindowView::Page& page, QWidget* parent);
    QWidget* makePart(tarnwick::SettingsWindowView::Part part, QWidget* parent);
    QWidget* makeShortcutRow(QWidget* parent);
    QWidget* makeLaunchAtLoginRow(QWidget* parent);
    QWidget* makeAutomaticUpdatesSwitch(QWidget* parent);
    QWidget* makeReleaseChannelRow(QWidget* parent);
    QWidget* makeCheckNowButton(QWidget* parent);
    void redraw();
    void setLaunchSwitchEnabled(bool enabled);

    tarnwick::SettingsWindowView& view_;
    QTabWidget* tabs_ = nullptr;
    ShortcutViewWidget* shortcutField_ = nullptr;
    QCheckBox* launchAtLogin_ = nullptr;
    HiddenAppsWidget* hiddenApps_ = nullptr;
    QCheckBox* automaticUpdates_ = nullptr;
    QComboBox* channelPicker_ = nullptr;
    QPushButton* checkNow_ = nullptr;
    bool launchSwitchHadFocus_ = false;
    std::vector<platform::Subscription> changes_;
};

// The Settings window's content view.
std::shared_ptr<ContentView> makeSettingsContentView(tarnwick::SettingsWindowView& view);

}  // namespace platform::qt
