#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "platform/MainLoop.h"

namespace platform::xdg {

// Tells when processes end. Each watched process has a descriptor of its
// own (a pidfd) that the main loop watches, so an ending is seen when it
// happens, without polling.
class ProcessWatcher {
  public:
    using Handler = std::function<void(pid_t)>;

    explicit ProcessWatcher(MainLoop& loop) : loop_(loop) {}
    ~ProcessWatcher();
    ProcessWatcher(const ProcessWatcher&) = delete;
    ProcessWatcher& operator=(const ProcessWatcher&) = delete;

    // Calls onExit once, on the main loop, when the process ends. A process
    // that has ended already, or never was, is reported one turn later.
    // Watching a process again replaces its handler. False when the system
    // can't watch processes; the handler is then never called.
    bool watch(pid_t pid, Handler onExit);
    // Forgets the process; its handler won't be called.
    void unwatch(pid_t pid);

    bool isWatching(pid_t pid) const { return watches_.contains(pid); }
    std::size_t watchCount() const { return watches_.size(); }

  private:
    struct Watch {
        std::uint64_t generation;
        int descriptor;  // -1 while an ending is posted
        Token loopWatch;
        Handler onExit;
    };

    void reportExit(pid_t pid, std::uint64_t generation);
    void stopWatching(Watch& watch);

    MainLoop& loop_;
    std::uint64_t lastGeneration_ = 0;
    std::map<pid_t, Watch> watches_;
    // Posted reports hold this weakly: they may run after the watcher is gone.
    std::shared_ptr<ProcessWatcher*> self_ = std::make_shared<ProcessWatcher*>(this);
};

}  // namespace platform::xdg
