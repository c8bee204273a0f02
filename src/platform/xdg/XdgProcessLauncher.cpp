#include "platform/xdg/XdgProcessLauncher.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

extern char** environ;

namespace platform::xdg {

namespace {

// The attributes and file actions of one spawn, released however it ends.
class SpawnSetup {
  public:
    explicit SpawnSetup(bool quiet) {
        ::posix_spawnattr_init(&attributes_);
        ::posix_spawn_file_actions_init(&actions_);
        // A session of its own: no controlling terminal, no signals of ours.
        ::posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        sigset_t none;
        sigemptyset(&none);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        sigset_t all;
        sigfillset(&all);
        ::posix_spawnattr_setsigdefault(&attributes_, &all);
        ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        if (quiet) {
            ::posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
            ::posix_spawn_file_actions_adddup2(&actions_, STDOUT_FILENO, STDERR_FILENO);
        }
    }
    ~SpawnSetup() {
        ::posix_spawn_file_actions_destroy(&actions_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;

    const posix_spawnattr_t* attributes() const { return &attributes_; }
    const posix_spawn_file_actions_t* actions() const { return &actions_; }

  private:
    posix_spawnattr_t attributes_;
    posix_spawn_file_actions_t actions_;
};

int statusOf(int waitStatus) {
    if (WIFEXITED(waitStatus))
        return WEXITSTATUS(waitStatus);
    if (WIFSIGNALED(waitStatus))
        return 128 + WTERMSIG(waitStatus);
    return -1;
}

}  // namespace

std::string XdgProcessLauncher::launch(const std::filesystem::path& executable,
                                       const std::vector<std::string>& arguments) {
    std::vector<std::string> commandLine{executable.string()};
    commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
    return spawn(std::move(commandLine)).error;
}

pid_t XdgProcessLauncher::processIdentifier() const {
    return ::getpid();
}

XdgProcessLauncher::Started XdgProcessLauncher::spawn(std::vector<std::string> commandLine,
                                                      Options options) {
    if (commandLine.empty() || commandLine.front().empty())
        return {-1, "no program to start"};
    std::vector<char*> argv;
    for (auto& argument : commandLine)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    const SpawnSetup setup(options.quiet);
    pid_t pid = -1;
    const bool searchPath = commandLine.front().find('/') == std::string::npos;
    const auto start = searchPath ? ::posix_spawnp : ::posix_spawn;
    const int error =
        start(&pid, argv.front(), setup.actions(), setup.attributes(), argv.data(), environ);
    if (error != 0)
        return {-1, commandLine.front() + ": " + std::strerror(error)};
    collectWhenEnded(pid, std::move(options.onExit));
    return {pid, {}};
}

void XdgProcessLauncher::collectWhenEnded(pid_t pid, ExitHandler onExit) {
    watcher_.watch(pid, [onExit = std::move(onExit)](pid_t ended) {
        int waitStatus = 0;
        const bool collected = ::waitpid(ended, &waitStatus, WNOHANG) == ended;
        if (onExit)
            onExit(collected ? statusOf(waitStatus) : -1);
    });
}

}  // namespace platform::xdg
