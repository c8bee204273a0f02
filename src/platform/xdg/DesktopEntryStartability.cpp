#include "platform/xdg/DesktopEntryStartability.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/xdg/DesktopEntryExec.h"

namespace platform::xdg {

namespace {

bool isExecutableFile(const std::filesystem::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::optional<std::filesystem::path> findExecutable(std::string_view program,
                                                    std::string_view searchPath) {
    const std::filesystem::path name(program);
    if (program.empty())
        return std::nullopt;
    if (program.find('/') != std::string_view::npos) {
        if (name.is_absolute() && isExecutableFile(name))
            return name;
        return std::nullopt;
    }
    for (std::size_t start = 0; start <= searchPath.size();) {
        const auto end = std::min(searchPath.find(':', start), searchPath.size());
        const std::filesystem::path folder(searchPath.substr(start, end - start));
        if (folder.is_absolute() && isExecutableFile(folder / name))
            return folder / name;
        start = end + 1;
    }
    return std::nullopt;
}

std::optional<std::filesystem::path> findExecutable(std::string_view program) {
    const char* searchPath = std::getenv("PATH");
    return findExecutable(program, searchPath ? searchPath : "/usr/local/bin:/usr/bin:/bin");
}

DesktopEntryStartability DesktopEntryStartability::of(const DesktopEntry& entry) {
    if (entry.tryExec && !entry.tryExec->empty() && !findExecutable(*entry.tryExec))
        return {std::nullopt, "TryExec program " + *entry.tryExec + " not found"};
    const auto commandLine = desktopEntryCommandLine(entry.exec);
    if (commandLine.empty())
        return {std::nullopt, "no usable Exec"};
    auto program = findExecutable(commandLine.front());
    if (!program)
        return {std::nullopt, "program " + commandLine.front() + " not found"};
    return {std::move(program), {}};
}

}  // namespace platform::xdg
