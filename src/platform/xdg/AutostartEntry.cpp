#include "platform/xdg/AutostartEntry.h"

#include <system_error>

#include "platform/xdg/DesktopEntryExec.h"
#include "platform/xdg/DesktopEntryKeyFile.h"

namespace platform::xdg {

namespace {

constexpr const char* groupName = "Desktop Entry";
constexpr const char* sessionSwitch = "X-GNOME-Autostart-enabled";

std::string_view rawValue(const DesktopEntryKeyFile::Group& group, std::string_view key) {
    const auto it = group.find(key);
    return it == group.end() ? std::string_view() : std::string_view(it->second);
}

bool isSameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code error;
    return a == b || std::filesystem::equivalent(a, b, error);
}

bool startsExecutable(const DesktopEntryKeyFile::Group& group,
                      const std::filesystem::path& executable) {
    const auto commandLine =
        desktopEntryCommandLine(desktop_entry_value::unescaped(rawValue(group, "Exec")));
    return !commandLine.empty() && isSameFile(commandLine.front(), executable);
}

bool isSwitchedOff(const DesktopEntryKeyFile::Group& group) {
    return desktop_entry_value::boolean(rawValue(group, "Hidden")).value_or(false) ||
           !desktop_entry_value::boolean(rawValue(group, sessionSwitch)).value_or(true);
}

}  // namespace

std::string AutostartEntry::text(const std::filesystem::path& executable, std::string_view name) {
    std::string text = std::string("[") + groupName + "]\n";
    const auto add = [&text](std::string_view key, std::string_view value) {
        text.append(key).append("=").append(value).append("\n");
    };
    add("Type", "Application");
    add("Name", desktop_entry_value::escaped(name));
    add("Exec", desktop_entry_value::escaped(desktopEntryExec({executable.string()})));
    // The name the program's icon is installed under in the icon theme.
    add("Icon", "tarnwick");
    add("Terminal", "false");
    add(sessionSwitch, "true");
    return text;
}

AutostartEntry::State AutostartEntry::stateOf(std::string_view text,
                                              const std::filesystem::path& executable) {
    const auto file = DesktopEntryKeyFile::parse(text);
    const auto* group = file ? file->group(groupName) : nullptr;
    if (!group || rawValue(*group, "Type") != "Application" ||
        !startsExecutable(*group, executable)) {
        return State::foreign;
    }
    return isSwitchedOff(*group) ? State::switchedOff : State::startsProgram;
}

}  // namespace platform::xdg
