#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/xdg/DesktopEntry.h"

namespace platform::xdg {

// The executable a program name stands for: an absolute path as it is, a
// bare name looked up in the absolute folders of the search path. Relative
// paths, in the name or in the search path, never count: they would find
// whatever lies in the working directory. Nothing when no executable
// regular file is there.
std::optional<std::filesystem::path> findExecutable(std::string_view program,
                                                    std::string_view searchPath);
std::optional<std::filesystem::path> findExecutable(std::string_view program);

// Whether an application entry can really start: its TryExec program, when
// it names one, and the program of its Exec are found as executables.
struct DesktopEntryStartability {
    std::optional<std::filesystem::path> program;  // the Exec's program, when it can start
    std::string problem;                           // why it can't, for a line naming it

    static DesktopEntryStartability of(const DesktopEntry& entry);
};

}  // namespace platform::xdg
