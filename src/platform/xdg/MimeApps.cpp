#include "platform/xdg/MimeApps.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <set>
#include <sstream>

#include "platform/xdg/DesktopEntryKeyFile.h"

namespace platform::xdg {

namespace {

using Associations = std::map<std::string, std::vector<std::string>, std::less<>>;

Associations associationsOf(const DesktopEntryKeyFile& file, std::string_view groupName) {
    Associations associations;
    if (const auto* group = file.group(groupName)) {
        for (const auto& [type, ids] : *group)
            associations[type] = desktop_entry_value::list(ids);
    }
    return associations;
}

const std::vector<std::string>& idsFor(const Associations& associations, std::string_view type) {
    static const std::vector<std::string> none;
    const auto it = associations.find(type);
    return it == associations.end() ? none : it->second;
}

void appendOnce(std::vector<const DesktopEntry*>& entries, const DesktopEntry* entry) {
    if (entry && std::find(entries.begin(), entries.end(), entry) == entries.end())
        entries.push_back(entry);
}

std::string lowercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::optional<std::string> readFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return std::nullopt;
    std::ostringstream contents;
    contents << stream.rdbuf();
    return std::move(contents).str();
}

const DesktopEntry* installedApplication(const DesktopEntryIndex& index, const std::string& id) {
    const auto* entry = index.entryWithId(id);
    if (!entry || entry->hidden || entry->type != DesktopEntry::Type::application)
        return nullptr;
    return entry;
}

bool declares(const DesktopEntry& entry, std::string_view type) {
    return std::find(entry.mimeTypes.begin(), entry.mimeTypes.end(), type) != entry.mimeTypes.end();
}

}  // namespace

MimeApps::MimeApps(const std::vector<std::filesystem::path>& files) {
    for (const auto& file : files) {
        if (const auto text = readFile(file))
            lists_.push_back(parseList(*text));
    }
}

std::vector<std::filesystem::path> MimeApps::listFiles(const DesktopEntryDirectories& directories) {
    std::vector<std::filesystem::path> levels{directories.configHome};
    levels.insert(levels.end(), directories.configDirs.begin(), directories.configDirs.end());
    levels.push_back(directories.userApplicationsDirectory());
    for (const auto& directory : directories.systemApplicationsDirectories()) {
        levels.push_back(directory);
    }
    std::vector<std::filesystem::path> files;
    for (const auto& level : levels) {
        for (const auto& desktop : directories.currentDesktops) {
            files.push_back(level / (lowercased(desktop) + "-mimeapps.list"));
        }
        files.push_back(level / "mimeapps.list");
    }
    return files;
}

MimeApps::List MimeApps::parseList(std::string_view text) {
    const auto file = DesktopEntryKeyFile::parse(text);
    if (!file)
        return {};
    return List{associationsOf(*file, "Default Applications"),
                associationsOf(*file, "Added Associations"),
                associationsOf(*file, "Removed Associations")};
}

const DesktopEntry* MimeApps::defaultApplication(std::string_view contentType,
                                                 const DesktopEntryIndex& index) const {
    const auto applications = applicationsFor(contentType, index);
    return applications.empty() ? nullptr : applications.front();
}

std::vector<const DesktopEntry*> MimeApps::associatedApplications(
    std::string_view contentType, const DesktopEntryIndex& index) const {
    std::vector<const DesktopEntry*> found;
    const auto add = [&](const DesktopEntry* entry) { appendOnce(found, entry); };
    for (const auto& list : lists_) {
        for (const auto& id : idsFor(list.defaults, contentType))
            add(installedApplication(index, id));
    }
    std::set<std::string, std::less<>> removedAbove;
    for (const auto& list : lists_) {
        const auto& removedHere = idsFor(list.removed, contentType);
        removedAbove.insert(removedHere.begin(), removedHere.end());
        for (const auto& id : idsFor(list.added, contentType)) {
            if (!removedAbove.contains(id))
                add(installedApplication(index, id));
        }
    }
    return found;
}

std::set<std::string, std::less<>> MimeApps::removedIds(std::string_view contentType) const {
    std::set<std::string, std::less<>> removed;
    for (const auto& list : lists_) {
        const auto& removedHere = idsFor(list.removed, contentType);
        removed.insert(removedHere.begin(), removedHere.end());
    }
    return removed;
}

std::vector<const DesktopEntry*> MimeApps::applicationsFor(std::string_view contentType,
                                                           const DesktopEntryIndex& index) const {
    auto found = associatedApplications(contentType, index);
    const auto add = [&](const DesktopEntry* entry) { appendOnce(found, entry); };
    const auto removed = removedIds(contentType);
    std::vector<const DesktopEntry*> undisplayed;
    for (const auto& entry : index.entries()) {
        if (entry.hidden || entry.type != DesktopEntry::Type::application)
            continue;
        if (!declares(entry, contentType) || removed.contains(entry.id))
            continue;
        if (entry.noDisplay)
            undisplayed.push_back(&entry);
        else
            add(&entry);
    }
    for (const auto* entry : undisplayed)
        add(entry);
    return found;
}

}  // namespace platform::xdg
