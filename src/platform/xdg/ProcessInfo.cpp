#include "platform/xdg/ProcessInfo.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>

namespace platform::xdg {

namespace {

std::filesystem::path procPath(pid_t pid, const char* file) {
    return std::filesystem::path("/proc") / std::to_string(pid) / file;
}

std::vector<std::string> splitAtNul(const std::string& text) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start < text.size()) {
        const auto end = std::min(text.find('\0', start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

std::string withoutTrailingNewline(std::string text) {
    if (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

bool isInterpreter(const std::string& name) {
    constexpr std::array<std::string_view, 8> interpreters{"python", "perl", "ruby", "node",
                                                           "sh",     "bash", "java", "gjs"};
    // "python3" and "python3.11" are python; "shotwell" is no sh.
    return std::any_of(interpreters.begin(), interpreters.end(), [&](std::string_view interpreter) {
        if (!name.starts_with(interpreter))
            return false;
        return name.size() == interpreter.size() ||
               (name[interpreter.size()] >= '0' && name[interpreter.size()] <= '9');
    });
}

std::string fileName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

// The file name of the script an interpreter runs: its first argument that
// is no option.
std::string scriptName(const std::vector<std::string>& commandLine) {
    for (std::size_t i = 1; i < commandLine.size(); ++i) {
        if (!commandLine[i].empty() && commandLine[i].front() != '-')
            return fileName(commandLine[i]);
    }
    return {};
}

// The process state letter of /proc/<pid>/stat: after the name, which is in
// parentheses and may itself hold parentheses.
char processState(pid_t pid) {
    const auto stat = readProcessFile(pid, "stat");
    const auto close = stat.rfind(')');
    if (close == std::string::npos || close + 2 >= stat.size())
        return 0;
    return stat[close + 2];
}

std::optional<pid_t> pidNamed(const std::string& name) {
    pid_t pid = 0;
    const auto* end = name.data() + name.size();
    const auto [ptr, error] = std::from_chars(name.data(), end, pid);
    if (error != std::errc() || ptr != end || pid <= 0)
        return std::nullopt;
    return pid;
}

}  // namespace

ProcessInfo ProcessInfo::read(pid_t pid) {
    ProcessInfo info;
    info.processIdentifier = pid;
    if (pid <= 0)
        return info;
    std::error_code error;
    info.executable = std::filesystem::read_symlink(procPath(pid, "exe"), error);
    if (error)
        info.executable.clear();
    info.name = withoutTrailingNewline(readProcessFile(pid, "comm"));
    info.commandLine = splitAtNul(readProcessFile(pid, "cmdline"));
    // A process that ended while we read leaves a mix of old and missing
    // parts; report it as gone.
    if (!isProcessAlive(pid))
        return ProcessInfo{pid, {}, {}, {}};
    return info;
}

std::vector<std::string> ProcessInfo::executableNames() const {
    std::vector<std::string> names;
    const auto add = [&](std::string candidate) {
        if (!candidate.empty() && std::find(names.begin(), names.end(), candidate) == names.end()) {
            names.push_back(std::move(candidate));
        }
    };
    add(executable.filename().string());
    if (!commandLine.empty())
        add(fileName(commandLine.front()));
    add(name);
    if (isInterpreter(executable.filename().string()) ||
        (!commandLine.empty() && isInterpreter(fileName(commandLine.front())))) {
        add(scriptName(commandLine));
    }
    return names;
}

bool isProcessAlive(pid_t pid) {
    if (pid <= 0)
        return false;
    const char state = processState(pid);
    return state != 0 && state != 'Z' && state != 'X';
}

std::vector<pid_t> allProcessIdentifiers() {
    std::vector<pid_t> pids;
    std::error_code error;
    for (std::filesystem::directory_iterator it("/proc", error), end; !error && it != end;
         it.increment(error)) {
        if (const auto pid = pidNamed(it->path().filename().string()))
            pids.push_back(*pid);
    }
    std::sort(pids.begin(), pids.end());
    return pids;
}

std::filesystem::path currentExecutable() {
    std::error_code error;
    auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::path() : path;
}

std::string readProcessFile(pid_t pid, const char* file) {
    std::ifstream stream(procPath(pid, file), std::ios::binary);
    if (!stream)
        return {};
    std::ostringstream contents;
    contents << stream.rdbuf();
    return std::move(contents).str();
}

}  // namespace platform::xdg
