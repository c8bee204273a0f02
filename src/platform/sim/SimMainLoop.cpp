#include "platform/sim/SimMainLoop.h"

#include <poll.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace platform::sim {

namespace {
// A loop that never goes idle is a fault in the code under test; stop
// rather than hang the test run.
constexpr std::size_t runawayLimit = 1'000'000;
}  // namespace

void SimMainLoop::post(Task task) {
    tasks_.push_back(std::move(task));
}

Token SimMainLoop::postAfter(double seconds, Task task) {
    const auto id = nextId();
    timers_.emplace(TimerKey{now_ + (seconds > 0 ? seconds : 0), id}, Timer{id, std::move(task)});
    return Token{id};
}

void SimMainLoop::cancel(Token timer) {
    for (auto it = timers_.begin(); it != timers_.end(); ++it) {
        if (it->second.id == timer.id) {
            timers_.erase(it);
            return;
        }
    }
}

Token SimMainLoop::watchFileDescriptor(int fd, Task onReadable) {
    const auto id = nextId();
    watches_.emplace(id, std::make_pair(fd, std::move(onReadable)));
    return Token{id};
}

void SimMainLoop::unwatch(Token watch) {
    watches_.erase(watch.id);
}

std::size_t SimMainLoop::runOneTurn() {
    std::size_t count = tasks_.size();
    for (std::size_t i = 0; i < count && !tasks_.empty(); ++i) {
        Task task = std::move(tasks_.front());
        tasks_.pop_front();
        task();
    }
    return count;
}

bool SimMainLoop::runDueTimer() {
    if (timers_.empty() || timers_.begin()->first.due > now_)
        return false;
    Task task = std::move(timers_.begin()->second.task);
    timers_.erase(timers_.begin());
    task();
    return true;
}

bool SimMainLoop::pollDescriptors(int timeoutMs) {
    if (watches_.empty())
        return false;
    std::vector<pollfd> fds;
    std::vector<std::uint64_t> ids;
    for (const auto& [id, watch] : watches_) {
        fds.push_back(pollfd{watch.first, POLLIN, 0});
        ids.push_back(id);
    }
    if (::poll(fds.data(), fds.size(), timeoutMs) <= 0)
        return false;
    bool ran = false;
    for (std::size_t i = 0; i < fds.size(); ++i) {
        if (!(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
            continue;
        auto it = watches_.find(ids[i]);
        if (it == watches_.end())
            continue;
        Task handler = it->second.second;  // the handler may unwatch itself
        handler();
        ran = true;
    }
    return ran;
}

std::size_t SimMainLoop::runUntilIdle() {
    std::size_t ran = 0;
    for (;;) {
        if (!tasks_.empty()) {
            Task task = std::move(tasks_.front());
            tasks_.pop_front();
            task();
        } else if (!runDueTimer() && !pollDescriptors(0)) {
            return ran;
        }
        if (++ran > runawayLimit) {
            std::fprintf(stderr, "SimMainLoop: the loop never went idle\n");
            std::abort();
        }
    }
}

void SimMainLoop::advance(double seconds) {
    const double target = now_ + seconds;
    runUntilIdle();
    while (!timers_.empty() && timers_.begin()->first.due <= target) {
        now_ = std::max(now_, timers_.begin()->first.due);
        runUntilIdle();
    }
    now_ = target;
    runUntilIdle();
}

bool SimMainLoop::runUntil(const std::function<bool()>& predicate, double realSeconds) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::duration<double>(realSeconds);
    auto last = Clock::now();
    for (;;) {
        runUntilIdle();
        if (predicate())
            return true;
        if (Clock::now() >= deadline)
            return false;
        pollDescriptors(10);
        // The clock keeps pace with the real time waited, so that timers of
        // code reacting to the real world come due as they would.
        const auto now = Clock::now();
        advance(std::chrono::duration<double>(now - last).count());
        last = now;
    }
}

}  // namespace platform::sim
