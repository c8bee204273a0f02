#include "platform/xdg/DesktopEntryIcons.h"

#include <array>

namespace platform::xdg {

namespace {

// Sizes good for a list row first, then larger and scalable ones, which
// scale down well, then the small ones.
constexpr std::array<std::string_view, 12> sizes{"48x48",   "64x64",   "96x96",    "128x128",
                                                 "256x256", "512x512", "scalable", "32x32",
                                                 "24x24",   "22x22",   "16x16",    "192x192"};
constexpr std::array<std::string_view, 4> contexts{"apps", "legacy", "places", "devices"};
// Compressed SVG too: some applications ship their scalable icon only so.
constexpr std::array<std::string_view, 4> extensions{".png", ".svg", ".svgz", ".xpm"};

bool isFile(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

// Icon values are meant to be bare names, but some carry an extension.
std::string withoutImageExtension(std::string_view icon) {
    for (const auto extension : extensions) {
        if (icon.size() > extension.size() && icon.ends_with(extension)) {
            return std::string(icon.substr(0, icon.size() - extension.size()));
        }
    }
    return std::string(icon);
}

std::optional<std::filesystem::path> withAnyExtension(const std::filesystem::path& base) {
    for (const auto extension : extensions) {
        auto candidate = base;
        candidate += extension;
        if (isFile(candidate))
            return candidate;
    }
    return std::nullopt;
}

}  // namespace

DesktopEntryIcons::DesktopEntryIcons(const DesktopEntryDirectories& directories,
                                     std::vector<std::string> themes)
    : themes_(std::move(themes)) {
    dataDirectories_.push_back(directories.dataHome);
    dataDirectories_.insert(dataDirectories_.end(), directories.dataDirs.begin(),
                            directories.dataDirs.end());
}

std::optional<std::filesystem::path> DesktopEntryIcons::find(std::string_view icon) const {
    if (icon.empty())
        return std::nullopt;
    const std::filesystem::path path(icon);
    if (path.is_absolute())
        return isFile(path) ? std::optional(path) : std::nullopt;
    if (icon.find('/') != std::string_view::npos)
        return std::nullopt;
    if (const auto it = found_.find(icon); it != found_.end())
        return it->second;
    return found_[std::string(icon)] = search(withoutImageExtension(icon));
}

std::optional<std::filesystem::path> DesktopEntryIcons::search(const std::string& name) const {
    if (auto path = searchThemes(name))
        return path;
    return searchPixmaps(name);
}

std::optional<std::filesystem::path> DesktopEntryIcons::searchThemes(
    const std::string& name) const {
    for (const auto& theme : themes_) {
        for (const auto& dataDirectory : dataDirectories_) {
            const auto themeDirectory = dataDirectory / "icons" / theme;
            std::error_code error;
            if (!std::filesystem::is_directory(themeDirectory, error))
                continue;
            for (const auto size : sizes) {
                for (const auto context : contexts) {
                    if (auto path = withAnyExtension(themeDirectory / size / context / name)) {
                        return path;
                    }
                }
            }
        }
    }
    return std::nullopt;
}

std::optional<std::filesystem::path> DesktopEntryIcons::searchPixmaps(
    const std::string& name) const {
    for (const auto& dataDirectory : dataDirectories_) {
        if (auto path = withAnyExtension(dataDirectory / "pixmaps" / name))
            return path;
    }
    return std::nullopt;
}

}  // namespace platform::xdg
