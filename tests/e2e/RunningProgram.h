#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "support/ScopedEnvironment.h"

namespace e2e {

// How a process ended.
struct ExitStatus {
    bool exited = false;  // by exit(); otherwise by a signal
    int code = 0;         // the exit status, or the signal's number
    friend bool operator==(const ExitStatus&, const ExitStatus&) = default;
};

constexpr ExitStatus exitedWith(int code) {
    return {true, code};
}

// A started program, with its standard output and error collected as it
// runs. A program still running when this goes is killed.
class RunningProgram {
  public:
    // Starts the executable with the arguments; the variables named in
    // removedEnvironment are taken out of its environment.
    RunningProgram(const std::string& executable, const std::vector<std::string>& arguments,
                   const std::vector<std::string>& removedEnvironment = {});
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    pid_t pid() const { return pid_; }
    void sendSignal(int signal) const;

    // Waits for the program to end; nothing if it didn't within the time.
    std::optional<ExitStatus> waitForExit(double seconds);
    // Waits until the program has a handler of its own for the signal,
    // which it installs once it is ready to be stopped by it.
    bool waitUntilHandling(int signal, double seconds);

    // Stops reading the program's standard output, as a reader that went
    // away does: its next write there fails.
    void closeStandardOutput();

    const std::string& standardOutput() const { return output_; }
    const std::string& standardError() const { return error_; }

  private:
    bool collectOutput(int timeoutMs);
    bool reap();

    pid_t pid_ = -1;
    int outputFd_ = -1;
    int errorFd_ = -1;
    std::string output_;
    std::string error_;
    std::optional<ExitStatus> status_;
};

// Preferences, runtime files and the file manager's instance of the test's
// own, in a temporary folder set as XDG_CONFIG_HOME and XDG_RUNTIME_DIR for
// the programs started while it lives: each start is a first start.
class PrivateFolders {
  public:
    PrivateFolders();
    ~PrivateFolders();
    PrivateFolders(const PrivateFolders&) = delete;
    PrivateFolders& operator=(const PrivateFolders&) = delete;

    // Where the program keeps its preferences.
    std::string preferenceFile() const;
    // Makes the programs start as after their first run: the instructions
    // have been seen, so a start brings the panel up, not the onboarding.
    void markInstructionsSeen() const;
    // The processes started while the folders live, and the ones they
    // started, running the executable.
    std::vector<pid_t> processesRunning(const std::string& executable) const;

  private:
    std::string home_;
    testsupport::ScopedEnvironment environment_;
};

// The tarnwick executable of this build.
inline const char* tarnwickExecutable() {
    return TARNWICK_EXECUTABLE;
}

// Runs tarnwick to its end (killed after the time) and reports how it ended.
struct ProgramResult {
    std::optional<ExitStatus> status;
    std::string output;
    std::string error;
};
ProgramResult runTarnwick(const std::vector<std::string>& arguments, double seconds = 10,
                          const std::vector<std::string>& removedEnvironment = {});

}  // namespace e2e
