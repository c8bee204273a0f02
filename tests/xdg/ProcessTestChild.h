#pragma once

#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform::xdg::fixtures {

// A child process for tests of process endings: it waits until killed, or
// ends at once. Killed and reaped at the end of the test if still there.
class ProcessTestChild {
  public:
    enum class Behaviour { waitForSignal, exitAtOnce };

    explicit ProcessTestChild(Behaviour behaviour = Behaviour::waitForSignal) : pid_(::fork()) {
        if (pid_ == 0) {
            if (behaviour == Behaviour::waitForSignal)
                ::pause();
            ::_exit(0);
        }
    }
    ~ProcessTestChild() {
        kill();
        reap();
    }
    ProcessTestChild(const ProcessTestChild&) = delete;
    ProcessTestChild& operator=(const ProcessTestChild&) = delete;

    pid_t pid() const { return pid_; }
    void kill() {
        if (!reaped_)
            ::kill(pid_, SIGKILL);
    }
    // Waits for the child to end and removes its zombie.
    void reap() {
        if (reaped_ || pid_ <= 0)
            return;
        ::waitpid(pid_, nullptr, 0);
        reaped_ = true;
    }
    // Waits for the child to end but leaves its zombie.
    void waitUntilEnded() {
        siginfo_t info{};
        ::waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOWAIT);
    }

  private:
    pid_t pid_;
    bool reaped_ = false;
};

}  // namespace platform::xdg::fixtures
