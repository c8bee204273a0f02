#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/xdg/DesktopEntryLocale.h"

namespace platform::xdg {

// One installed application (or link, or directory) as its desktop entry
// file describes it: the values of its "[Desktop Entry]" group, with
// localised values chosen for a locale.
struct DesktopEntry {
    enum class Type { application, link, directory, other };

    // The desktop-file id: the path below the applications directory with
    // '/' turned into '-', such as "pcmanfm.desktop" or "kde4-okular.desktop".
    std::string id;
    std::filesystem::path path;

    Type type = Type::other;
    std::string name;
    std::optional<std::string> genericName;
    bool noDisplay = false;
    bool hidden = false;
    std::string exec;
    std::optional<std::string> tryExec;
    std::optional<std::string> icon;
    std::optional<std::string> startupWMClass;
    std::vector<std::string> mimeTypes;
    std::vector<std::string> onlyShowIn;
    std::vector<std::string> notShowIn;

    // Nothing for damaged text or text without a "[Desktop Entry]" group
    // that names its Type and Name.
    static std::optional<DesktopEntry> parse(std::string_view text,
                                             const DesktopEntryLocale& locale = {});
    // The entry of a file, with the given id; nothing when the file can't
    // be read or is no desktop entry.
    static std::optional<DesktopEntry> load(const std::filesystem::path& file, std::string id,
                                            const DesktopEntryLocale& locale = {});

    // The id without its ".desktop": what names the application elsewhere.
    std::string idWithoutSuffix() const;
    // An application a user would see in a menu: neither NoDisplay nor Hidden.
    bool isVisibleApplication() const { return type == Type::application && !noDisplay && !hidden; }
};

// The desktop-file id of a file below an applications directory; nothing
// when the file doesn't lie below it or isn't named "*.desktop".
std::optional<std::string> desktopFileId(const std::filesystem::path& applicationsDirectory,
                                         const std::filesystem::path& file);

}  // namespace platform::xdg
