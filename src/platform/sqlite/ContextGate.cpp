#include "platform/sqlite/ContextGate.h"

#include <utility>

namespace platform::sqlite {

void ContextGate::lock() {
    mutex_.lock();
    ++depth_;
}

// The holder's last unlock runs what was posted meanwhile, then lets go; work
// posted between the two is picked up right after.
void ContextGate::unlock() {
    if (depth_ == 1)
        runPosted();
    --depth_;
    mutex_.unlock();
    if (hasPosted_)
        tryRunPosted();
}

void ContextGate::post(std::function<void()> work) {
    {
        std::lock_guard guard(postedMutex_);
        posted_.push_back(std::move(work));
        hasPosted_ = true;
    }
    tryRunPosted();
}

void ContextGate::runPosted() {
    for (;;) {
        std::vector<std::function<void()>> work;
        {
            std::lock_guard guard(postedMutex_);
            work.swap(posted_);
            hasPosted_ = false;
        }
        if (work.empty())
            return;
        for (auto& item : work)
            item();
    }
}

// Only a free gate runs posted work here: a thread that already holds it
// (posting from inside its own block) leaves the work to its last unlock.
void ContextGate::tryRunPosted() {
    if (!mutex_.try_lock())
        return;
    if (depth_ > 0) {
        mutex_.unlock();
        return;
    }
    ++depth_;
    unlock();
}

}  // namespace platform::sqlite
