// Starts the program again once the process that asked for it has ended:
//   AppRestartHelper --watch-pid PID --app PATH
// The end is seen through a pidfd, without polling. A process already gone
// starts the program at once. Bad arguments print the usage and start
// nothing.
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

extern char** environ;

#ifndef SYS_pidfd_open
#define SYS_pidfd_open 434
#endif

namespace {

constexpr int badArguments = 2;
constexpr int failed = 1;

struct Request {
    pid_t pid = 0;
    std::string app;
};

void printUsage() {
    std::fputs("Usage: AppRestartHelper --watch-pid PID --app PATH\n", stderr);
}

std::optional<pid_t> processIdentifier(std::string_view text) {
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), pid);
    if (error != std::errc() || end != text.data() + text.size() || pid <= 0)
        return std::nullopt;
    return pid;
}

// Exactly the two options, in this order, each with its value.
std::optional<Request> parse(int argc, char** argv) {
    if (argc != 5 || std::string_view(argv[1]) != "--watch-pid" ||
        std::string_view(argv[3]) != "--app" || !*argv[4]) {
        return std::nullopt;
    }
    const auto pid = processIdentifier(argv[2]);
    if (!pid)
        return std::nullopt;
    return Request{*pid, argv[4]};
}

// Returns once the process has ended, or at once when it is already gone.
// False when it can't be watched.
bool waitForEnd(pid_t pid) {
    const int pidfd = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    if (pidfd < 0) {
        if (errno == ESRCH)
            return true;
        std::fprintf(stderr, "AppRestartHelper: cannot watch process %d: %s\n", pid,
                     std::strerror(errno));
        return false;
    }
    pollfd ended{pidfd, POLLIN, 0};
    while (::poll(&ended, 1, -1) < 0 && errno == EINTR) {
    }
    ::close(pidfd);
    return true;
}

// The program starts with no arguments and our environment, and is left
// to run: this helper ends right after.
bool start(const std::string& app) {
    char* argv[] = {const_cast<char*>(app.c_str()), nullptr};
    pid_t child = -1;
    const int error = ::posix_spawn(&child, app.c_str(), nullptr, nullptr, argv, environ);
    if (error != 0) {
        std::fprintf(stderr, "AppRestartHelper: cannot start %s: %s\n", app.c_str(),
                     std::strerror(error));
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const auto request = parse(argc, argv);
    if (!request) {
        printUsage();
        return badArguments;
    }
    if (!waitForEnd(request->pid) || !start(request->app))
        return failed;
    return 0;
}
