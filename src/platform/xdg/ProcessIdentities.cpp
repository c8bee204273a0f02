#include "platform/xdg/ProcessIdentities.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <map>
#include <string_view>

#include "platform/xdg/ProcessInfo.h"

namespace platform::xdg {

ProcessIdentities::ProcessIdentities(const DesktopEntryIndex& entries,
                                     const DesktopEntryIcons& icons,
                                     std::optional<DefaultFileManager> fileManager, Identity own,
                                     std::filesystem::path ownExecutable)
    : entries_(entries),
      icons_(icons),
      fileManager_(std::move(fileManager)),
      own_(std::move(own)),
      ownExecutable_(std::move(ownExecutable)) {}

bool ProcessIdentities::isOurs(pid_t pid) const {
    if (pid == ::getpid())
        return true;
    return !ownExecutable_.empty() && ProcessInfo::read(pid).executable == ownExecutable_;
}

const DesktopEntry* ProcessIdentities::entryOf(pid_t pid,
                                               const std::optional<WindowIdentity>& window) const {
    if (window) {
        if (const auto* entry = entries_.entryForApplicationId(window->applicationId))
            return entry;
        if (const auto* entry =
                entries_.entryForWindowClass(window->instanceName, window->className))
            return entry;
    }
    return entries_.entryForProcess(pid);
}

ProcessIdentities::Identity ProcessIdentities::identityOf(
    pid_t pid, const std::optional<WindowIdentity>& window, bool onlyAccessoryWindows) const {
    if (isOurs(pid))
        return own_;
    const auto* entry = entryOf(pid, window);
    const bool isFinder = entry && fileManager_ && fileManager_->entry().id == entry->id;
    if (onlyAccessoryWindows && !isFinder)
        return XdgRunningApplication::accessoryIdentityOfProcess(pid);
    return XdgRunningApplication::identityFor(pid, entry, fileManager(), icons_);
}

std::optional<ProcessIdentities::Identity> ProcessIdentities::finderIdentity() const {
    if (!fileManager_)
        return std::nullopt;
    return XdgRunningApplication::finderIdentityOf(fileManager_->entry(), icons_);
}

std::optional<std::filesystem::path> ProcessIdentities::applicationLocation(
    const std::string& bundleIdentifier) const {
    if (bundleIdentifier == DefaultFileManager::finderBundleIdentifier && fileManager_)
        return DefaultFileManager::finderBundlePath();
    const auto* entry = entries_.entryWithId(bundleIdentifier);
    if (!entry || entry->hidden)
        return std::nullopt;
    return entry->path;
}

std::optional<Image> ProcessIdentities::applicationIcon(
    const std::filesystem::path& location) const {
    if (location == DefaultFileManager::finderBundlePath())
        return finderIdentity() ? finderIdentity()->icon : std::nullopt;
    const auto entry = DesktopEntry::load(location, location.filename().string());
    if (!entry)
        return std::nullopt;
    return XdgRunningApplication::identityOf(*entry, icons_).icon;
}

namespace {

// The user's processes on this display, in ascending order.
std::vector<pid_t> usersProcessesOnDisplay() {
    const char* display = std::getenv("DISPLAY");
    std::vector<pid_t> processes;
    for (const pid_t pid : allProcessIdentifiers()) {
        if (isOwnUsersProcess(pid) && isOnDisplay(pid, display))
            processes.push_back(pid);
    }
    return processes;
}

}  // namespace

std::set<std::string> runningProgramNames() {
    std::set<std::string> names;
    for (const pid_t pid : usersProcessesOnDisplay()) {
        for (auto& name : ProcessInfo::read(pid).executableNames())
            names.insert(std::move(name));
    }
    return names;
}

std::vector<pid_t> ProcessIdentities::processesWithEntries() const {
    std::map<pid_t, const DesktopEntry*> found;
    for (const pid_t pid : usersProcessesOnDisplay()) {
        if (const auto* entry = entries_.entryForProcess(pid))
            found.emplace(pid, entry);
    }
    std::vector<pid_t> processes;
    for (const auto& [pid, entry] : found) {
        const auto parent = parentProcessIdentifier(pid);
        const auto parentEntry = parent ? found.find(*parent) : found.end();
        if (parentEntry != found.end() && parentEntry->second == entry)
            continue;
        processes.push_back(pid);
    }
    return processes;
}

namespace {

// ":0.1" and ":0" are one display.
std::string_view withoutScreen(std::string_view display) {
    const auto colon = display.rfind(':');
    const auto dot = display.find('.', colon == std::string_view::npos ? 0 : colon);
    return dot == std::string_view::npos ? display : display.substr(0, dot);
}

}  // namespace

bool isOnDisplay(pid_t pid, const char* display) {
    if (!display || !*display)
        return true;
    const auto environment = readProcessFile(pid, "environ");
    constexpr std::string_view key = "DISPLAY=";
    std::size_t start = 0;
    while (start < environment.size()) {
        const auto end = std::min(environment.find('\0', start), environment.size());
        const std::string_view variable(environment.data() + start, end - start);
        if (variable.starts_with(key))
            return withoutScreen(variable.substr(key.size())) == withoutScreen(display);
        start = end + 1;
    }
    return false;
}

std::optional<pid_t> parentProcessIdentifier(pid_t pid) {
    const auto stat = readProcessFile(pid, "stat");
    // "pid (name) state ppid ...": the name may hold spaces and parentheses.
    const auto close = stat.rfind(')');
    if (close == std::string::npos || close + 4 >= stat.size())
        return std::nullopt;
    const auto start = stat.find(' ', close + 2);
    if (start == std::string::npos)
        return std::nullopt;
    pid_t parent = 0;
    const auto* first = stat.data() + start + 1;
    const auto [end, error] = std::from_chars(first, stat.data() + stat.size(), parent);
    if (error != std::errc() || end == first)
        return std::nullopt;
    return parent;
}

bool isOwnUsersProcess(pid_t pid) {
    struct stat status {};
    const auto path = "/proc/" + std::to_string(pid);
    return ::stat(path.c_str(), &status) == 0 && status.st_uid == ::getuid();
}

}  // namespace platform::xdg
