#include "platform/xdg/DesktopEntryExec.h"

#include <filesystem>

namespace platform::xdg {

namespace {

// One argument with its field codes removed; nothing when the argument was
// only a field code.
std::optional<std::string> withoutFieldCodes(const std::string& argument) {
    std::string result;
    bool hadFieldCode = false;
    for (std::size_t i = 0; i < argument.size(); ++i) {
        if (argument[i] != '%' || i + 1 == argument.size()) {
            result += argument[i];
        } else if (argument[++i] == '%') {
            result += '%';
        } else {
            hadFieldCode = true;
        }
    }
    if (hadFieldCode && result.empty())
        return std::nullopt;
    return result;
}

bool isQuotedEscape(char c) {
    return c == '"' || c == '`' || c == '$' || c == '\\';
}

// Splits at spaces outside double quotes. Nothing for an unclosed quote.
std::optional<std::vector<std::string>> splitArguments(std::string_view exec) {
    std::vector<std::string> arguments;
    std::string current;
    bool inArgument = false;
    bool quoted = false;
    for (std::size_t i = 0; i < exec.size(); ++i) {
        const char c = exec[i];
        if (quoted) {
            if (c == '\\' && i + 1 < exec.size() && isQuotedEscape(exec[i + 1])) {
                current += exec[++i];
            } else if (c == '"') {
                quoted = false;
            } else {
                current += c;
            }
        } else if (c == ' ' || c == '\t' || c == '\n') {
            if (inArgument)
                arguments.push_back(std::move(current));
            current.clear();
            inArgument = false;
        } else {
            inArgument = true;
            if (c == '"') {
                quoted = true;
            } else {
                current += c;
            }
        }
    }
    if (quoted)
        return std::nullopt;
    if (inArgument)
        arguments.push_back(std::move(current));
    return arguments;
}

bool needsQuotes(const std::string& argument) {
    return argument.empty() ||
           argument.find_first_of(" \t\n\"'\\><~|&;$*?#()`") != std::string::npos;
}

std::string quotedArgument(const std::string& argument) {
    if (!needsQuotes(argument))
        return argument;
    std::string quoted = "\"";
    for (const char c : argument) {
        if (isQuotedEscape(c))
            quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

std::string withPercentsDoubled(const std::string& argument) {
    std::string doubled;
    for (const char c : argument) {
        doubled += c;
        if (c == '%')
            doubled += '%';
    }
    return doubled;
}

bool isEnvironmentAssignment(const std::string& argument) {
    const auto equals = argument.find('=');
    return equals != std::string::npos && equals > 0 && argument.front() != '-';
}

}  // namespace

std::vector<std::string> desktopEntryCommandLine(std::string_view exec) {
    const auto arguments = splitArguments(exec);
    if (!arguments)
        return {};
    std::vector<std::string> commandLine;
    for (const auto& argument : *arguments) {
        if (auto kept = withoutFieldCodes(argument))
            commandLine.push_back(std::move(*kept));
    }
    return commandLine;
}

std::string desktopEntryExec(const std::vector<std::string>& commandLine) {
    std::string exec;
    for (const auto& argument : commandLine) {
        if (!exec.empty())
            exec += ' ';
        exec += quotedArgument(withPercentsDoubled(argument));
    }
    return exec;
}

std::optional<std::string> desktopEntryProgramName(std::string_view exec) {
    const auto commandLine = desktopEntryCommandLine(exec);
    auto program = commandLine.begin();
    if (program != commandLine.end() && std::filesystem::path(*program).filename() == "env") {
        ++program;
        while (program != commandLine.end() && isEnvironmentAssignment(*program))
            ++program;
    }
    if (program == commandLine.end())
        return std::nullopt;
    auto name = std::filesystem::path(*program).filename().string();
    if (name.empty())
        return std::nullopt;
    return name;
}

}  // namespace platform::xdg
