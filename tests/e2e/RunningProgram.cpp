#include "RunningProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "PreferenceFile.h"

namespace e2e {

namespace {

using Clock = std::chrono::steady_clock;

Clock::time_point deadlineAfter(double seconds) {
    return Clock::now() +
           std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

[[noreturn]] void execute(const std::string& executable, const std::vector<std::string>& arguments,
                          const std::vector<std::string>& removedEnvironment, int outputFd,
                          int errorFd) {
    dup2(outputFd, STDOUT_FILENO);
    dup2(errorFd, STDERR_FILENO);
    for (const auto& name : removedEnvironment)
        unsetenv(name.c_str());
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(executable.c_str()));
    for (const auto& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(executable.c_str(), argv.data());
    _exit(127);
}

// Whether the process has its own handler for the signal, from the caught
// signals mask in /proc.
bool isHandling(pid_t pid, int signal) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("SigCgt:", 0) != 0)
            continue;
        const auto mask = std::stoull(line.substr(7), nullptr, 16);
        return (mask >> (signal - 1)) & 1;
    }
    return false;
}

// The processes whose environment holds the variable with this value:
// those started while the folders lived, and the ones they started.
std::vector<pid_t> processesWith(const std::string& variable) {
    std::vector<pid_t> found;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", ignored)) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos)
            continue;
        std::ifstream environment(entry.path() / "environ", std::ios::binary);
        for (std::string line; std::getline(environment, line, '\0');) {
            if (line == variable) {
                found.push_back(std::stoi(name));
                break;
            }
        }
    }
    return found;
}

// Gone, or ended and only waiting to be reaped.
bool hasEnded(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line))
        return true;
    const auto state = line.rfind(") ");
    return state == std::string::npos || line[state + 2] == 'Z';
}

}  // namespace

RunningProgram::RunningProgram(const std::string& executable,
                               const std::vector<std::string>& arguments,
                               const std::vector<std::string>& removedEnvironment) {
    int output[2];
    int error[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(error, O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot make pipes for the program's output");
    }
    pid_ = fork();
    if (pid_ < 0)
        throw std::runtime_error("cannot start " + executable);
    if (pid_ == 0)
        execute(executable, arguments, removedEnvironment, output[1], error[1]);
    close(output[1]);
    close(error[1]);
    outputFd_ = output[0];
    errorFd_ = error[0];
    fcntl(outputFd_, F_SETFL, O_NONBLOCK);
    fcntl(errorFd_, F_SETFL, O_NONBLOCK);
}

RunningProgram::~RunningProgram() {
    if (!status_ && pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    close(outputFd_);
    close(errorFd_);
}

void RunningProgram::closeStandardOutput() {
    close(outputFd_);
    outputFd_ = -1;  // poll() passes over it from now on
}

void RunningProgram::sendSignal(int signal) const {
    if (!status_)
        kill(pid_, signal);
}

// Reads what is there, waiting up to the time for something to come.
bool RunningProgram::collectOutput(int timeoutMs) {
    pollfd fds[2] = {{outputFd_, POLLIN, 0}, {errorFd_, POLLIN, 0}};
    if (poll(fds, 2, timeoutMs) <= 0)
        return false;
    bool read = false;
    char buffer[4096];
    for (auto& [fd, target] : {std::pair{outputFd_, &output_}, std::pair{errorFd_, &error_}}) {
        ssize_t n;
        while ((n = ::read(fd, buffer, sizeof buffer)) > 0) {
            target->append(buffer, static_cast<std::size_t>(n));
            read = true;
        }
    }
    return read;
}

bool RunningProgram::reap() {
    if (status_)
        return true;
    int raw = 0;
    if (waitpid(pid_, &raw, WNOHANG) != pid_)
        return false;
    status_ =
        WIFEXITED(raw) ? ExitStatus{true, WEXITSTATUS(raw)} : ExitStatus{false, WTERMSIG(raw)};
    while (collectOutput(0)) {
    }
    return true;
}

std::optional<ExitStatus> RunningProgram::waitForExit(double seconds) {
    const auto deadline = deadlineAfter(seconds);
    while (!reap()) {
        if (Clock::now() >= deadline)
            return std::nullopt;
        collectOutput(10);
    }
    return status_;
}

bool RunningProgram::waitUntilHandling(int signal, double seconds) {
    const auto deadline = deadlineAfter(seconds);
    while (!isHandling(pid_, signal)) {
        if (reap() || Clock::now() >= deadline)
            return false;
        collectOutput(10);
    }
    return true;
}

ProgramResult runTarnwick(const std::vector<std::string>& arguments, double seconds,
                          const std::vector<std::string>& removedEnvironment) {
    RunningProgram program(tarnwickExecutable(), arguments, removedEnvironment);
    auto status = program.waitForExit(seconds);
    return {status, program.standardOutput(), program.standardError()};
}

PrivateFolders::PrivateFolders() {
    char pattern[] = "/tmp/tarnwick-e2e.XXXXXX";
    home_ = ::mkdtemp(pattern);
    environment_.set("XDG_CONFIG_HOME", home_ + "/config");
    const std::string runtime = home_ + "/run";
    ::mkdir(runtime.c_str(), 0700);
    environment_.set("XDG_RUNTIME_DIR", runtime);
}

// A program may leave helpers running, such as the file manager it starts
// in its background mode: they go with the folders, so that the next test
// meets none of them.
PrivateFolders::~PrivateFolders() {
    // Asked first, so that they take away what they published on the
    // display (the accessibility bus's address, say); then made to go.
    const auto leftovers = processesWith("XDG_RUNTIME_DIR=" + home_ + "/run");
    for (const int signal : {SIGTERM, SIGKILL}) {
        for (const pid_t pid : leftovers)
            kill(pid, signal);
        const auto deadline = deadlineAfter(2);
        for (const pid_t pid : leftovers) {
            while (!hasEnded(pid) && Clock::now() < deadline)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    std::error_code ignored;
    std::filesystem::remove_all(home_, ignored);
}

void PrivateFolders::markInstructionsSeen() const {
    writePreferenceFile(preferenceFile(), {{"needsShowingInstructions", false}});
}

std::vector<pid_t> PrivateFolders::processesRunning(const std::string& executable) const {
    std::vector<pid_t> running;
    for (const pid_t pid : processesWith("XDG_RUNTIME_DIR=" + home_ + "/run")) {
        std::error_code ignored;
        const auto program =
            std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", ignored);
        if (!hasEnded(pid) && std::filesystem::equivalent(program, executable, ignored))
            running.push_back(pid);
    }
    return running;
}

std::string PrivateFolders::preferenceFile() const {
    return home_ + "/config/tarnwick/harrowmere.Tarnwick.plist";
}

}  // namespace e2e
