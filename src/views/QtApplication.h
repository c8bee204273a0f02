#pragma once

#include <QPointer>
#include <QWindow>
#include <memory>

#include "platform/Application.h"

class QWidget;

namespace platform::qt {

// Ends Qt's event loop: at once when it runs, else as soon as it starts.
void quitEventLoop();

// The program as the Qt desktop sees it. An accessory (or prohibited)
// application keeps its windows out of taskbars and pagers; a regular one
// shows them there. Activating raises the window that last had focus.
// Terminating ends the Qt event loop.
class QtApplication final : public Application {
  public:
    QtApplication();
    ~QtApplication() override;
    QtApplication(const QtApplication&) = delete;
    QtApplication& operator=(const QtApplication&) = delete;

    ActivationPolicy activationPolicy() const override { return policy_; }
    bool setActivationPolicy(ActivationPolicy policy) override;
    void activate() override;
    bool isActive() const override;
    std::shared_ptr<Menu> mainMenu() const override { return mainMenu_; }
    // There is no menu bar of the application's own on this desktop; the menu
    // is kept for whoever asks for it.
    void setMainMenu(std::shared_ptr<Menu> menu) override { mainMenu_ = std::move(menu); }
    void terminate() override;

    // Gives a top-level widget the desktop properties of the present policy;
    // the toolkit calls it before a window shows.
    void prepareWindow(QWidget* window) const;

  private:
    bool staysOutOfTaskbar() const { return policy_ != ActivationPolicy::regular; }
    QWidget* windowToActivate() const;

    ActivationPolicy policy_ = ActivationPolicy::regular;
    std::shared_ptr<Menu> mainMenu_;
    QPointer<QWindow> lastFocusWindow_;
    QMetaObject::Connection focusConnection_;
};

}  // namespace platform::qt
