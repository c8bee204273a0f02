#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/xdg/DesktopEntryDirectories.h"

namespace platform::xdg {

// Finds the image file of an entry's Icon value: an absolute path as it
// stands, else the name in the icon themes' usual places
// (<data dir>/icons/<theme>/<size>/<context>/<name>.png, .svg, .svgz or
// .xpm, the "scalable" size among the others),
// then in <data dir>/pixmaps. A plain lookup by theme name and size, with
// answers remembered.
class DesktopEntryIcons {
  public:
    explicit DesktopEntryIcons(const DesktopEntryDirectories& directories,
                               std::vector<std::string> themes = {"hicolor", "Adwaita"});

    std::optional<std::filesystem::path> find(std::string_view icon) const;

  private:
    std::optional<std::filesystem::path> search(const std::string& name) const;
    std::optional<std::filesystem::path> searchThemes(const std::string& name) const;
    std::optional<std::filesystem::path> searchPixmaps(const std::string& name) const;

    std::vector<std::filesystem::path> dataDirectories_;
    std::vector<std::string> themes_;
    mutable std::map<std::string, std::optional<std::filesystem::path>, std::less<>> found_;
};

}  // namespace platform::xdg
