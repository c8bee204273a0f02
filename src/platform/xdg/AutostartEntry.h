#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace platform::xdg {

// The desktop entry in the user's autostart folder that a desktop session
// reads at login to start this program.
struct AutostartEntry {
    // What an entry with our file name says about the program.
    enum class State {
        startsProgram,  // ours and on: the session starts the program
        switchedOff,    // ours, but the session was told not to start it
        foreign,        // damaged, or it starts something else
    };

    // The entry's text: an application named so, whose command is the
    // executable alone.
    static std::string text(const std::filesystem::path& executable, std::string_view name);

    // Ours means an application entry whose command starts this executable
    // (the same file, by whatever path). It is switched off by Hidden=true
    // or X-GNOME-Autostart-enabled=false, as sessions read them.
    static State stateOf(std::string_view text, const std::filesystem::path& executable);
};

}  // namespace platform::xdg
