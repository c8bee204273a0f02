#include "tracking/AppPresentation.h"

namespace tarnwick {

namespace {

std::optional<std::string> bundleFolderName(const platform::RunningApplication& application) {
    auto location = application.bundleURL();
    if (!location)
        return std::nullopt;
    return lastPathComponent(*location);
}

}  // namespace

std::string lastPathComponent(const std::filesystem::path& path) {
    auto text = path.generic_string();
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    auto name = std::filesystem::path(text).filename().generic_string();
    return name.empty() ? text : name;
}

std::string sortName(const platform::RunningApplication& application) {
    if (auto name = application.localizedName())
        return *name;
    if (auto folder = bundleFolderName(application))
        return *folder;
    if (auto identifier = application.bundleIdentifier())
        return *identifier;
    return application.description();
}

std::string displayName(const platform::RunningApplication& application) {
    if (auto name = application.localizedName())
        return *name;
    if (auto identifier = application.bundleIdentifier())
        return *identifier;
    if (auto folder = bundleFolderName(application))
        return *folder;
    return "Unknown";
}

platform::Image displayIcon(const platform::RunningApplication& application) {
    if (auto icon = application.icon())
        return *icon;
    return platform::Image::systemSymbol("circle");
}

}  // namespace tarnwick
