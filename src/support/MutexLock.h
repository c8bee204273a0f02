#pragma once

#include <pthread.h>

#include <utility>

namespace quillbox {

// The library's plain mutual-exclusion lock over a POSIX mutex. It is not
// recursive: locking it twice on one thread deadlocks. Usable with
// std::lock_guard and std::unique_lock.
class MutexLock {
  public:
    // Stops the process with "Lock creation catastrophically failed" when the
    // mutex can't be made.
    MutexLock();
    // Prints "Failed to destroy mutex lock." when the mutex refuses to go
    // (it is still held, say), and goes on.
    ~MutexLock();
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    void lock();
    void unlock();
    // Takes the lock if it is free; false when another holder has it.
    bool tryLock();

    // Runs the body with the lock held and gives its result; the lock is
    // released also when the body throws, and the exception passes on.
    template <typename Body>
    decltype(auto) withLock(Body&& body) {
        struct Release {
            MutexLock& lock;
            ~Release() { lock.unlock(); }
        };
        lock();
        Release release{*this};
        return std::forward<Body>(body)();
    }

    // A stored switch for diagnostics; it doesn't change how locking works.
    bool debugMode = false;

  private:
    pthread_mutex_t mutex_;
};

}  // namespace quillbox
