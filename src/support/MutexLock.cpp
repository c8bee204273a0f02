#include "support/MutexLock.h"

#include "support/Fatal.h"
#include "support/StandardOutput.h"

namespace quillbox {

MutexLock::MutexLock() {
    if (pthread_mutex_init(&mutex_, nullptr) != 0)
        fatalError("Lock creation catastrophically failed");
}

MutexLock::~MutexLock() {
    if (pthread_mutex_destroy(&mutex_) != 0)
        printLine("Failed to destroy mutex lock.");
}

void MutexLock::lock() {
    pthread_mutex_lock(&mutex_);
}

void MutexLock::unlock() {
    pthread_mutex_unlock(&mutex_);
}

bool MutexLock::tryLock() {
    return pthread_mutex_trylock(&mutex_) == 0;
}

}  // namespace quillbox
