#include "tracking/AppEligibility.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "tracking/AppPresentation.h"

namespace tarnwick {

namespace {

namespace fs = std::filesystem;

// The location without "." and ".." steps and without a trailing separator,
// so that two spellings of one folder compare equal.
fs::path canonicalSpelling(const fs::path& path) {
    auto text = path.lexically_normal().generic_string();
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return text;
}

std::vector<std::string> pathComponents(const fs::path& path) {
    std::vector<std::string> components;
    for (const auto& component : canonicalSpelling(path))
        components.push_back(component.generic_string());
    return components;
}

// The system file manager lives outside the applications folder.
bool isSystemFileManager(const fs::path& location) {
    static const std::array<std::string, 4> systemLocation{"System", "Library", "CoreServices",
                                                           "Finder.app"};
    if (lastPathComponent(location) != "Finder.app")
        return false;
    const auto components = pathComponents(location);
    return components.size() >= systemLocation.size() &&
           std::equal(systemLocation.begin(), systemLocation.end(),
                      components.end() - static_cast<std::ptrdiff_t>(systemLocation.size()));
}

// A missing key, or a value that isn't a Boolean, counts as false.
bool flag(const platform::PropertyList::Dictionary& info, const char* key) {
    auto it = info.find(key);
    if (it == info.end())
        return false;
    const auto* value = it->second.get<bool>();
    return value && *value;
}

bool liesInApplicationsFolder(const fs::path& location) {
    const auto parent = canonicalSpelling(canonicalSpelling(location).parent_path());
    const auto folders = platform::fileManager().applicationsDirectories();
    return std::any_of(folders.begin(), folders.end(), [&parent](const fs::path& folder) {
        return canonicalSpelling(folder) == parent;
    });
}

}  // namespace

bool shouldTrack(const platform::RunningApplication& application) {
    const auto location = application.bundleURL();
    if (!location)
        return false;
    if (isSystemFileManager(*location))
        return true;
    const auto bundle = platform::bundles().bundleWithPath(*location);
    const auto* info = bundle ? bundle->infoDictionary() : nullptr;
    if (!info)
        return false;
    if (flag(*info, "LSUIElement") || flag(*info, "LSBackgroundOnly"))
        return false;
    return liesInApplicationsFolder(*location);
}

}  // namespace tarnwick
