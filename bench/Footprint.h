#pragma once

// What the memory and wake-up harnesses read of a process: its resident
// memory and how often it was scheduled, from /proc.
#include <sys/types.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace bench {

// A field of /proc/PID/status, in its own unit (kB for memory); 0 when
// missing.
inline long statusField(pid_t pid, const std::string& name) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(name + ":", 0) == 0)
            return std::stol(line.substr(name.size() + 1));
    }
    return 0;
}

inline long residentKiB(pid_t pid) {
    return statusField(pid, "VmRSS");
}

// Every time the process was taken off the processor, voluntarily (it
// waited) or not: a process that sleeps until an event comes adds none
// while nothing happens.
inline long contextSwitches(pid_t pid) {
    return statusField(pid, "voluntary_ctxt_switches") +
           statusField(pid, "nonvoluntary_ctxt_switches");
}

inline void printGrowth(const char* what, long cycles, long beforeKiB, long afterKiB) {
    std::printf("resident memory over %ld %s: %+ld KiB (%ld KiB -> %ld KiB)\n", cycles, what,
                afterKiB - beforeKiB, beforeKiB, afterKiB);
}

}  // namespace bench
