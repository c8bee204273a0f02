#include "platform/xdg/DesktopEntryIndex.h"

#include <algorithm>
#include <cctype>

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
    const auto rank = [&](std::size_t index) {
        const auto& entry = entries_[index];
        if (entry.idWithoutSuffix() == name)
            return 0;
        return entry.isVisibleApplication() ? 1 : 2;
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
    for (const auto name : {className, instanceName}) {
        if (name.empty())
            continue;
        const auto wanted = lowercased(name);
        for (const auto& entry : entries_) {
            if (isRunnableApplication(entry) && lowercased(entry.idWithoutSuffix()) == wanted) {
                return &entry;
            }
        }
    }
    return nullptr;
}

}  // namespace platform::xdg
