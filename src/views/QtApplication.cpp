#include "views/QtApplication.h"

#include <QApplication>
#include <QCoreApplication>
#include <QWidget>

#include "views/TaskbarPresence.h"

namespace platform::qt {

QtApplication::QtApplication() {
    focusConnection_ =
        QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, [this](QWindow* window) {
            if (window)
                lastFocusWindow_ = window;
        });
}

QtApplication::~QtApplication() {
    QObject::disconnect(focusConnection_);
}

bool QtApplication::setActivationPolicy(ActivationPolicy policy) {
    policy_ = policy;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            prepareWindow(window);
    }
    return true;
}

void QtApplication::prepareWindow(QWidget* window) const {
    if (window)
        x11::setSkipTaskbarAndPager(*window, staysOutOfTaskbar());
}

void QtApplication::activate() {
    if (policy_ == ActivationPolicy::prohibited)
        return;
    QWidget* window = windowToActivate();
    if (!window)
        return;
    window->raise();
    window->activateWindow();
}

// The window that had focus last, if still shown; else any shown window
// that can take focus.
QWidget* QtApplication::windowToActivate() const {
    QWidget* fallback = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || window->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus)) {
            continue;
        }
        if (lastFocusWindow_ && window->windowHandle() == lastFocusWindow_)
            return window;
        if (!fallback)
            fallback = window;
    }
    return fallback;
}

bool QtApplication::isActive() const {
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

// Queued, so that a quit asked before the loop runs still ends it once it
// does. Not QCoreApplication::quit(): that first asks every window to
// close, and ours answer a close by hiding, which cancels the quit.
void quitEventLoop() {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

void QtApplication::terminate() {
    quitEventLoop();
}

}  // namespace platform::qt
