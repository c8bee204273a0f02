#include "views/QtMainLoop.h"

#include <QMetaObject>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <climits>
#include <cmath>

namespace platform::qt {

namespace {

// Whole milliseconds, rounded up so that a timer never fires early.
int millisecondsFor(double seconds) {
    if (!(seconds > 0))
        return 0;
    const double ms = std::ceil(seconds * 1000.0);
    return ms >= INT_MAX ? INT_MAX : static_cast<int>(ms);
}

}  // namespace

QtMainLoop::QtMainLoop() : context_(std::make_unique<QObject>()) {}

QtMainLoop::~QtMainLoop() = default;

void QtMainLoop::post(Task task) {
    QMetaObject::invokeMethod(context_.get(), std::move(task), Qt::QueuedConnection);
}

Token QtMainLoop::postAfter(double seconds, Task task) {
    const auto id = ++lastId_;
    auto* timer = new QTimer(context_.get());
    timer->setSingleShot(true);
    // Coarse timers may fire a little early; a delay here is a promise.
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, context_.get(),
                     [this, id, task = std::move(task)] { fire(id, task); });
    timers_.emplace(id, timer);
    timer->start(millisecondsFor(seconds));
    return Token{id};
}

void QtMainLoop::fire(std::uint64_t id, const Task& task) {
    auto it = timers_.find(id);
    if (it == timers_.end())
        return;
    // Deleted later: the task runs from the timer's own signal.
    it->second->deleteLater();
    timers_.erase(it);
    task();
}

void QtMainLoop::cancel(Token timer) {
    auto it = timers_.find(timer.id);
    if (it == timers_.end())
        return;
    it->second->stop();
    it->second->deleteLater();
    timers_.erase(it);
}

Token QtMainLoop::watchFileDescriptor(int fd, Task onReadable) {
    const auto id = ++lastId_;
    auto* notifier = new QSocketNotifier(fd, QSocketNotifier::Read, context_.get());
    QObject::connect(notifier, &QSocketNotifier::activated, context_.get(),
                     [this, id, onReadable = std::move(onReadable)] {
                         if (watches_.count(id))
                             onReadable();
                     });
    watches_.emplace(id, notifier);
    return Token{id};
}

void QtMainLoop::unwatch(Token watch) {
    auto it = watches_.find(watch.id);
    if (it == watches_.end())
        return;
    it->second->setEnabled(false);
    it->second->deleteLater();
    watches_.erase(it);
}

double QtMainLoop::now() const {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace platform::qt
