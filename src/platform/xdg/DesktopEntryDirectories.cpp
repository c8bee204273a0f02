#include "platform/xdg/DesktopEntryDirectories.h"

#include <pwd.h>
#include <unistd.h>

#include <string_view>

namespace platform::xdg {

namespace {

std::string environmentValue(const DesktopEntryDirectories::Environment& getenv, const char* name) {
    const char* value = getenv(name);
    return value ? std::string(value) : std::string();
}

std::filesystem::path absoluteOr(const std::string& value, std::filesystem::path fallback) {
    std::filesystem::path path(value);
    return path.is_absolute() ? path : fallback;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start <= text.size()) {
        const auto end = std::min(text.find(separator, start), text.size());
        if (end > start)
            parts.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

std::vector<std::filesystem::path> absolutePaths(const std::string& value,
                                                 std::vector<std::filesystem::path> fallback) {
    std::vector<std::filesystem::path> paths;
    for (const auto& part : split(value, ':')) {
        std::filesystem::path path(part);
        if (path.is_absolute())
            paths.push_back(path);
    }
    return paths.empty() ? fallback : paths;
}

}  // namespace

std::filesystem::path DesktopEntryDirectories::homeDirectory(const Environment& getenv) {
    if (const std::filesystem::path home = environmentValue(getenv, "HOME"); home.is_absolute())
        return home;
    if (const passwd* user = ::getpwuid(::getuid()); user && user->pw_dir) {
        if (const std::filesystem::path home = user->pw_dir; home.is_absolute())
            return home;
    }
    return "/nonexistent";
}

DesktopEntryDirectories DesktopEntryDirectories::fromEnvironment(const Environment& getenv) {
    const std::filesystem::path home = homeDirectory(getenv);
    DesktopEntryDirectories directories;
    directories.dataHome =
        absoluteOr(environmentValue(getenv, "XDG_DATA_HOME"), home / ".local" / "share");
    directories.dataDirs = absolutePaths(environmentValue(getenv, "XDG_DATA_DIRS"),
                                         {"/usr/local/share", "/usr/share"});
    directories.configHome =
        absoluteOr(environmentValue(getenv, "XDG_CONFIG_HOME"), home / ".config");
    directories.configDirs =
        absolutePaths(environmentValue(getenv, "XDG_CONFIG_DIRS"), {"/etc/xdg"});
    directories.currentDesktops = split(environmentValue(getenv, "XDG_CURRENT_DESKTOP"), ':');
    return directories;
}

std::filesystem::path DesktopEntryDirectories::userApplicationsDirectory() const {
    return dataHome / "applications";
}

std::vector<std::filesystem::path> DesktopEntryDirectories::systemApplicationsDirectories() const {
    std::vector<std::filesystem::path> directories;
    for (const auto& dataDir : dataDirs)
        directories.push_back(dataDir / "applications");
    return directories;
}

std::vector<std::filesystem::path> DesktopEntryDirectories::applicationsDirectories() const {
    auto directories = systemApplicationsDirectories();
    directories.insert(directories.begin(), userApplicationsDirectory());
    return directories;
}

}  // namespace platform::xdg
