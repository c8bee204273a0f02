#include "platform/xdg/ProcessWatcher.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#ifndef SYS_pidfd_open
#define SYS_pidfd_open 434
#endif

namespace platform::xdg {

namespace {

// A descriptor that becomes readable when the process ends; -1 with errno
// set when there is none (ESRCH: no such process).
int openProcessDescriptor(pid_t pid) {
    return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
}

}  // namespace

ProcessWatcher::~ProcessWatcher() {
    for (auto& [pid, watch] : watches_)
        stopWatching(watch);
}

bool ProcessWatcher::watch(pid_t pid, Handler onExit) {
    unwatch(pid);
    const auto generation = ++lastGeneration_;
    const int descriptor = pid > 0 ? openProcessDescriptor(pid) : -1;
    if (descriptor < 0 && pid > 0 && errno != ESRCH)
        return false;

    auto& watch = watches_[pid] = Watch{generation, descriptor, {}, std::move(onExit)};
    if (descriptor < 0) {
        loop_.post([self = std::weak_ptr(self_), pid, generation] {
            if (const auto watcher = self.lock())
                (*watcher)->reportExit(pid, generation);
        });
    } else {
        watch.loopWatch = loop_.watchFileDescriptor(
            descriptor, [this, pid, generation] { reportExit(pid, generation); });
    }
    return true;
}

void ProcessWatcher::unwatch(pid_t pid) {
    const auto it = watches_.find(pid);
    if (it == watches_.end())
        return;
    stopWatching(it->second);
    watches_.erase(it);
}

void ProcessWatcher::stopWatching(Watch& watch) {
    if (watch.descriptor < 0)
        return;
    loop_.unwatch(watch.loopWatch);
    ::close(watch.descriptor);
    watch.descriptor = -1;
}

void ProcessWatcher::reportExit(pid_t pid, std::uint64_t generation) {
    const auto it = watches_.find(pid);
    // A posted report outlives an unwatch or a newer watch of the same pid.
    if (it == watches_.end() || it->second.generation != generation)
        return;
    auto onExit = std::move(it->second.onExit);
    unwatch(pid);
    if (onExit)
        onExit(pid);
}

}  // namespace platform::xdg
