#pragma once

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace platform::xdg {

// The XDG base directories in which desktop entries and the lists of default
// applications are found. Built from the environment in the program; tests
// fill the fields with a temporary tree.
struct DesktopEntryDirectories {
    using Environment = std::function<const char*(const char*)>;

    std::filesystem::path dataHome;                 // $XDG_DATA_HOME
    std::vector<std::filesystem::path> dataDirs;    // $XDG_DATA_DIRS, most important first
    std::filesystem::path configHome;               // $XDG_CONFIG_HOME
    std::vector<std::filesystem::path> configDirs;  // $XDG_CONFIG_DIRS, most important first
    // $XDG_CURRENT_DESKTOP, in its order ("LXDE", "GNOME", ...).
    std::vector<std::string> currentDesktops;

    // The directories the environment names, with the standard defaults for
    // unset or empty variables; relative paths are ignored, as they must be.
    static DesktopEntryDirectories fromEnvironment(const Environment& getenv = ::getenv);

    // The user's home: $HOME when it is an absolute path, else the one the
    // password database gives. Never relative, so that nothing is ever read
    // from the working directory; /nonexistent when there is none at all.
    static std::filesystem::path homeDirectory(const Environment& getenv = ::getenv);

    // The user's own applications directory.
    std::filesystem::path userApplicationsDirectory() const;
    // The system's applications directories: these play the part of
    // "/Applications".
    std::vector<std::filesystem::path> systemApplicationsDirectories() const;
    // Every applications directory, the user's first: the order in which an
    // entry of the same id wins.
    std::vector<std::filesystem::path> applicationsDirectories() const;
};

}  // namespace platform::xdg
