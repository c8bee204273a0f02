#include "platform/xdg/DesktopEntry.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "platform/xdg/DesktopEntryKeyFile.h"

namespace platform::xdg {

namespace {

constexpr std::string_view desktopSuffix = ".desktop";
// Desktop entries are small; anything far bigger is no desktop entry.
constexpr std::uintmax_t largestEntryFile = 1 << 20;

using Group = DesktopEntryKeyFile::Group;

const std::string* rawValue(const Group& group, const std::string& key) {
    const auto it = group.find(key);
    return it == group.end() ? nullptr : &it->second;
}

std::optional<std::string> stringValue(const Group& group, const std::string& key) {
    const auto* raw = rawValue(group, key);
    if (!raw)
        return std::nullopt;
    return desktop_entry_value::unescaped(*raw);
}

std::optional<std::string> localisedValue(const Group& group, const std::string& key,
                                          const DesktopEntryLocale& locale) {
    for (const auto& suffix : locale.candidates()) {
        if (auto value = stringValue(group, key + "[" + suffix + "]"))
            return value;
    }
    return stringValue(group, key);
}

bool booleanValue(const Group& group, const std::string& key) {
    const auto* raw = rawValue(group, key);
    return raw && desktop_entry_value::boolean(*raw).value_or(false);
}

std::vector<std::string> listValue(const Group& group, const std::string& key) {
    const auto* raw = rawValue(group, key);
    return raw ? desktop_entry_value::list(*raw) : std::vector<std::string>{};
}

DesktopEntry::Type typeNamed(std::string_view name) {
    if (name == "Application")
        return DesktopEntry::Type::application;
    if (name == "Link")
        return DesktopEntry::Type::link;
    if (name == "Directory")
        return DesktopEntry::Type::directory;
    return DesktopEntry::Type::other;
}

std::optional<std::string> readSmallFile(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return std::nullopt;
    const auto size = std::filesystem::file_size(file, error);
    if (error || size > largestEntryFile)
        return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return std::nullopt;
    std::ostringstream contents;
    contents << stream.rdbuf();
    if (stream.bad())
        return std::nullopt;
    return std::move(contents).str();
}

}  // namespace

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text,
                                                const DesktopEntryLocale& locale) {
    const auto file = DesktopEntryKeyFile::parse(text);
    if (!file || file->firstGroupName() != "Desktop Entry")
        return std::nullopt;
    const auto& group = *file->group("Desktop Entry");
    const auto type = stringValue(group, "Type");
    auto name = localisedValue(group, "Name", locale);
    if (!type || !name)
        return std::nullopt;

    DesktopEntry entry;
    entry.type = typeNamed(*type);
    entry.name = std::move(*name);
    entry.genericName = localisedValue(group, "GenericName", locale);
    entry.noDisplay = booleanValue(group, "NoDisplay");
    entry.hidden = booleanValue(group, "Hidden");
    entry.exec = stringValue(group, "Exec").value_or("");
    entry.tryExec = stringValue(group, "TryExec");
    entry.icon = localisedValue(group, "Icon", locale);
    entry.startupWMClass = stringValue(group, "StartupWMClass");
    entry.mimeTypes = listValue(group, "MimeType");
    entry.onlyShowIn = listValue(group, "OnlyShowIn");
    entry.notShowIn = listValue(group, "NotShowIn");
    return entry;
}

std::optional<DesktopEntry> DesktopEntry::load(const std::filesystem::path& file, std::string id,
                                               const DesktopEntryLocale& locale) {
    const auto text = readSmallFile(file);
    if (!text)
        return std::nullopt;
    auto entry = parse(*text, locale);
    if (!entry)
        return std::nullopt;
    entry->id = std::move(id);
    entry->path = file;
    return entry;
}

std::string DesktopEntry::idWithoutSuffix() const {
    if (id.size() > desktopSuffix.size() && id.ends_with(desktopSuffix)) {
        return id.substr(0, id.size() - desktopSuffix.size());
    }
    return id;
}

std::optional<std::string> desktopFileId(const std::filesystem::path& applicationsDirectory,
                                         const std::filesystem::path& file) {
    const auto relative =
        file.lexically_normal().lexically_relative(applicationsDirectory.lexically_normal());
    if (relative.empty() || *relative.begin() == "..")
        return std::nullopt;
    auto id = relative.generic_string();
    if (id.size() <= desktopSuffix.size() || !id.ends_with(desktopSuffix))
        return std::nullopt;
    std::replace(id.begin(), id.end(), '/', '-');
    return id;
}

}  // namespace platform::xdg
