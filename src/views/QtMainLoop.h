#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>

#include "platform/MainLoop.h"

class QObject;
class QSocketNotifier;
class QTimer;

namespace platform::qt {

// The main loop over Qt's event loop: posted tasks are queued calls, timers
// are single-shot Qt timers and descriptors are watched with socket
// notifiers. It adds no periodic timer of its own, so an idle program gets
// no wake-ups. Whatever is still pending when the loop is destroyed never
// runs.
class QtMainLoop final : public MainLoop {
  public:
    QtMainLoop();
    ~QtMainLoop() override;
    QtMainLoop(const QtMainLoop&) = delete;
    QtMainLoop& operator=(const QtMainLoop&) = delete;

    void post(Task task) override;
    Token postAfter(double seconds, Task task) override;
    void cancel(Token timer) override;
    Token watchFileDescriptor(int fd, Task onReadable) override;
    void unwatch(Token watch) override;
    double now() const override;

    std::size_t pendingTimerCount() const { return timers_.size(); }
    std::size_t watchCount() const { return watches_.size(); }

  private:
    void fire(std::uint64_t id, const Task& task);

    std::unique_ptr<QObject> context_;
    std::uint64_t lastId_ = 0;
    std::map<std::uint64_t, QTimer*> timers_;
    std::map<std::uint64_t, QSocketNotifier*> watches_;
};

}  // namespace platform::qt
