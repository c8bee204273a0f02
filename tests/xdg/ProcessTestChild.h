#pragma once

#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

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
    // Runs the program (a path) with the arguments, the program first, in a
    // process group of its own that ends with it.
    explicit ProcessTestChild(const std::vector<std::string>& commandLine)
        : pid_(::fork()), group_(true) {
        if (pid_ == 0) {
            ::setpgid(0, 0);
            std::vector<char*> arguments;
            for (const auto& argument : commandLine)
                arguments.push_back(const_cast<char*>(argument.c_str()));
            arguments.push_back(nullptr);
            ::execv(arguments.front(), arguments.data());
            ::_exit(127);
        }
        // Set on both sides, so that it holds whichever runs first.
        ::setpgid(pid_, pid_);
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
            ::kill(group_ ? -pid_ : pid_, SIGKILL);
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
    bool group_ = false;
    bool reaped_ = false;
};

}  // namespace platform::xdg::fixtures
