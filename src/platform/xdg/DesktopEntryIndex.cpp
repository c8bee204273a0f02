#include "platform/xdg/DesktopEntryIndex.h"

#include <algorithm>
#include <cctype>
#include <tuple>

#include "platform/xdg/DesktopEntryExec.h"

namespace platform::xdg {

namespace {

// The desktop entry files below a directory, by id, so that one
// directory's order doesn't depend on the file system.
std::vector<std::pair<std::string, std::filesystem::path>> entryFilesBelow(
    const std::filesystem::path& directory) {
    std::vector<std::pair<std::string, std::filesystem::path>> files;
    std::error_code error;
    const auto options = std::filesystem::directory_options::skip_permission_denied;
    for (std::filesystem::recursive_directory_iterator it(directory, options, error), end;
         !error && it != end; it.increment(error)) {
        if (auto id = desktopFileId(directory, it->path()))
            files.emplace_back(*id, it->path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string lowercased(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

std::string fileName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

bool isRunnableApplication(const DesktopEntry& entry) {
    return entry.type == DesktopEntry::Type::application && !entry.hidden;
}

// The last part of a reverse-domain id: "mousepad" of "org.xfce.mousepad".
std::string_view lastIdPart(std::string_view id) {
    const auto dot = id.rfind('.');
    return dot == std::string_view::npos ? id : id.substr(dot + 1);
}

// How closely an entry's id names a program or window class: the id itself
// (0), the last part of a reverse-domain id (1), or neither (2). Ignores
// case, as window classes capitalise what program names don't.
int idMatch(const DesktopEntry& entry, std::string_view name) {
    const auto id = lowercased(entry.idWithoutSuffix());
    const auto wanted = lowercased(name);
    if (id == wanted)
        return 0;
    return lastIdPart(id) == wanted ? 1 : 2;
}

// Whether the entry starts its program with options of its own, as the
// settings and helper entries of an application do ("mousepad
// --preferences"); the application's own entry passes at most the files.
bool startsWithOptions(const DesktopEntry& entry) {
    return desktopEntryCommandLine(entry.exec).size() > 1;
}

}  // namespace

DesktopEntryIndex::DesktopEntryIndex(DesktopEntryDirectories directories, DesktopEntryLocale locale)
    : directories_(std::move(directories)), locale_(std::move(locale)) {
    reload();
}

void DesktopEntryIndex::reload() {
    entries_.clear();
    byId_.clear();
    byExecutable_.clear();
    byWindowClass_.clear();
    for (const auto& directory : directories_.applicationsDirectories())
        addDirectory(directory);
}

void DesktopEntryIndex::addDirectory(const std::filesystem::path& directory) {
    for (auto& [id, file] : entryFilesBelow(directory)) {
        if (byId_.contains(id))
            continue;
        auto entry = DesktopEntry::load(file, id, locale_);
        if (!entry)
            continue;
        const auto index = entries_.size();
        byId_.emplace(id, index);
        if (isRunnableApplication(*entry)) {
            std::vector<std::string> names;
            if (auto program = desktopEntryProgramName(entry->exec))
                names.push_back(*program);
            if (entry->tryExec)
                names.push_back(fileName(*entry->tryExec));
            for (const auto& name : names) {
                auto& indices = byExecutable_[name];
                if (indices.empty() || indices.back() != index)
                    indices.push_back(index);
            }
            if (entry->startupWMClass)
                byWindowClass_[*entry->startupWMClass].push_back(index);
        }
        entries_.push_back(std::move(*entry));
    }
}

const DesktopEntry* DesktopEntryIndex::entryWithId(std::string_view id) const {
    auto it = byId_.find(id);
    if (it == byId_.end())
        it = byId_.find(std::string(id) + ".desktop");
    return it == byId_.end() ? nullptr : &entries_[it->second];
}

const DesktopEntry* DesktopEntryIndex::bestOf(const std::vector<std::size_t>& candidates,
                                              std::string_view name) const {
    // Several entries may run one program: the application's own entry,
    // its settings, helpers. The application's is the one shown in menus,
    // named after the program, and starting the program without options.
    const auto rank = [&](std::size_t index) {
        const auto& entry = entries_[index];
        return std::tuple(!entry.isVisibleApplication(), idMatch(entry, name),
                          startsWithOptions(entry));
    };
    const auto best = std::min_element(candidates.begin(), candidates.end(),
                                       [&](auto a, auto b) { return rank(a) < rank(b); });
    return best == candidates.end() ? nullptr : &entries_[*best];
}

const DesktopEntry* DesktopEntryIndex::entryForExecutableName(std::string_view name) const {
    const auto it = byExecutable_.find(name);
    return it == byExecutable_.end() ? nullptr : bestOf(it->second, name);
}

const DesktopEntry* DesktopEntryIndex::entryForProcess(const ProcessInfo& process) const {
    for (const auto& name : process.executableNames()) {
        if (const auto* entry = entryForExecutableName(name))
            return entry;
    }
    return nullptr;
}

const DesktopEntry* DesktopEntryIndex::entryForProcess(pid_t pid) const {
    return entryForProcess(ProcessInfo::read(pid));
}

const DesktopEntry* DesktopEntryIndex::entryForWindowClass(std::string_view instanceName,
                                                           std::string_view className) const {
    for (const auto name : {className, instanceName}) {
        const auto it = byWindowClass_.find(name);
        if (it != byWindowClass_.end())
            return bestOf(it->second, name);
    }
    // Without StartupWMClass, an id named like the class: "xterm.desktop" for
    // "XTerm", "org.xfce.mousepad.desktop" for "Mousepad"; one shown in menus
    // first, then the closer name, then the class before the instance.
    const DesktopEntry* best = nullptr;
    auto bestRank = std::tuple(true, 2);
    for (const auto name : {className, instanceName}) {
        if (name.empty())
            continue;
        for (const auto& entry : entries_) {
            if (!isRunnableApplication(entry))
                continue;
            const int closeness = idMatch(entry, name);
            const auto rank = std::tuple(!entry.isVisibleApplication(), closeness);
            if (closeness < 2 && (!best || rank < bestRank)) {
                best = &entry;
                bestRank = rank;
            }
        }
    }
    return best;
}

const DesktopEntry* DesktopEntryIndex::entryForApplicationId(std::string_view applicationId) const {
    if (applicationId.empty())
        return nullptr;
    const auto* entry = entryWithId(applicationId);
    return entry && isRunnableApplication(*entry) ? entry : nullptr;
}

}  // namespace platform::xdg
