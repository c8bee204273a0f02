#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/MainLoop.h"
#include "platform/ProcessLauncher.h"
#include "platform/xdg/ProcessWatcher.h"

namespace platform::xdg {

// Starts programs detached from us: each in a session of its own, with its
// standard input from /dev/null, so it outlives us and hears none of our
// terminal's signals. While we run, we collect each child's exit status
// when it ends, so no ended child lingers.
class XdgProcessLauncher final : public ProcessLauncher {
  public:
    // How a started program ended: its exit status, or 128 + the signal.
    using ExitHandler = std::function<void(int status)>;

    // A started process, or the reason there is none.
    struct Started {
        pid_t pid = -1;
        std::string error;
        explicit operator bool() const { return pid > 0; }
    };

    explicit XdgProcessLauncher(MainLoop& loop) : watcher_(loop) {}

    std::string launch(const std::filesystem::path& executable,
                       const std::vector<std::string>& arguments) override;
    pid_t processIdentifier() const override;

    struct Options {
        // Learns on the main loop how the program ended.
        ExitHandler onExit;
        // Sends the program's standard output and error to /dev/null.
        bool quiet = false;
    };

    // Starts a command line, the program first (searched in PATH when its
    // name has no '/').
    Started spawn(std::vector<std::string> commandLine, Options options);
    Started spawn(std::vector<std::string> commandLine) {
        return spawn(std::move(commandLine), {});
    }

  private:
    void collectWhenEnded(pid_t pid, ExitHandler onExit);

    ProcessWatcher watcher_;
};

}  // namespace platform::xdg
