#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

namespace platform::sqlite {

// The lock that confines a context. It may be taken again by its holder.
// Work posted to it (the merge of another context's save) runs under the
// lock: at once when the gate is free, else when its holder lets go of it,
// so that posting never waits for another thread and two contexts that tell
// each other of their saves can't deadlock.
class ContextGate {
  public:
    void lock();
    void unlock();
    void post(std::function<void()> work);

  private:
    void runPosted();
    void tryRunPosted();

    std::recursive_mutex mutex_;
    // How deep the holder is; changed only with mutex_ held.
    int depth_ = 0;
    std::mutex postedMutex_;
    std::vector<std::function<void()>> posted_;
    std::atomic<bool> hasPosted_ = false;
};

}  // namespace platform::sqlite
