#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace platform::xdg {

// What /proc tells of one process. A process that ends while it is read,
// or that was never there, gives an empty snapshot: nothing here fails
// loudly.
struct ProcessInfo {
    pid_t processIdentifier = 0;
    // The file the process runs (/proc/<pid>/exe); empty where the process
    // belongs to someone else or is gone.
    std::filesystem::path executable;
    // The kernel's short name of the process (/proc/<pid>/comm).
    std::string name;
    // The arguments, program first (/proc/<pid>/cmdline).
    std::vector<std::string> commandLine;

    static ProcessInfo read(pid_t pid);

    bool empty() const { return executable.empty() && name.empty() && commandLine.empty(); }

    // The names under which a desktop entry may know the process, best
    // first and without repeats: the executable's file name, the file name
    // of the first argument, the short name, and for a script run by an
    // interpreter the script's file name.
    std::vector<std::string> executableNames() const;
};

// Whether the process exists and hasn't ended (a zombie has ended).
bool isProcessAlive(pid_t pid);

// Every process identifier in /proc, in ascending order.
std::vector<pid_t> allProcessIdentifiers();

// The whole of /proc/<pid>/<file>; empty when it can't be read.
std::string readProcessFile(pid_t pid, const char* file);

// The executable of this process.
std::filesystem::path currentExecutable();

}  // namespace platform::xdg
