#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>
#include <cstdlib>
#include <functional>

namespace viewtest {

// Runs Qt's event loop until the condition holds; false if it doesn't
// within the time.
inline bool runQtUntil(const std::function<bool()>& done, int milliseconds = 5000) {
    QElapsedTimer clock;
    clock.start();
    QTimer wakeUp;  // so that the deadline is looked at while nothing happens
    wakeUp.start(10);
    while (!done()) {
        if (clock.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

// Runs Qt's event loop for a while, to see that something does not happen.
inline void runQtFor(int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    runQtUntil([&] { return clock.elapsed() >= milliseconds; }, milliseconds + 1000);
}

// With TARNWICK_SCREENSHOTS set to a folder, saves a picture of the widget
// there under the name, for a person to look at.
inline void saveScreenshot(QWidget& widget, const QString& name) {
    const char* folder = std::getenv("TARNWICK_SCREENSHOTS");
    if (!folder)
        return;
    QDir().mkpath(QString::fromLocal8Bit(folder));
    widget.grab().save(QDir(QString::fromLocal8Bit(folder)).filePath(name));
}

}  // namespace viewtest
