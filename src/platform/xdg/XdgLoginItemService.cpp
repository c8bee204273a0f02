#include "platform/xdg/XdgLoginItemService.h"

#include <sys/stat.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <system_error>

#include "platform/xdg/AtomicFile.h"
#include "platform/xdg/AutostartEntry.h"

namespace platform::xdg {

namespace fs = std::filesystem;

namespace {

// Far beyond any desktop entry; a bigger file is not ours.
constexpr std::uintmax_t largestEntry = 1 << 20;

std::optional<std::string> contentOf(const fs::path& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    if (error || size > largestEntry)
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file)
        return std::nullopt;
    return std::move(text).str();
}

}  // namespace

XdgLoginItemService::XdgLoginItemService(MainLoop& loop, fs::path entryPath, fs::path executable,
                                         std::string name)
    : loop_(loop),
      entryPath_(std::move(entryPath)),
      executable_(std::move(executable)),
      name_(std::move(name)) {}

fs::path XdgLoginItemService::entryPathIn(const fs::path& configHome,
                                          const std::string& bundleIdentifier) {
    return configHome / "autostart" / (bundleIdentifier + ".desktop");
}

LoginItemService::Status XdgLoginItemService::status() const {
    std::error_code error;
    if (!fs::exists(entryPath_, error))
        return Status::notRegistered;
    const auto text = contentOf(entryPath_);
    switch (text ? AutostartEntry::stateOf(*text, executable_) : AutostartEntry::State::foreign) {
        case AutostartEntry::State::startsProgram:
            return Status::enabled;
        case AutostartEntry::State::switchedOff:
            return Status::notRegistered;
        case AutostartEntry::State::foreign:
            break;
    }
    return Status::notFound;
}

std::string XdgLoginItemService::registerMainApp() {
    const auto folder = entryPath_.parent_path();
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        return "Could not create " + folder.string() + ": " + error.message();
    const auto failure = writeFileAtomically(entryPath_, AutostartEntry::text(executable_, name_),
                                             S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
    if (!failure.empty())
        return "Could not write " + entryPath_.string() + ": " + failure;
    return {};
}

void XdgLoginItemService::unregisterMainApp(Completion completion) {
    loop_.post(
        [completion = std::move(completion), failure = removeEntry()] { completion(failure); });
}

std::string XdgLoginItemService::removeEntry() const {
    std::error_code error;
    fs::remove(entryPath_, error);
    if (error)
        return "Could not remove " + entryPath_.string() + ": " + error.message();
    return {};
}

}  // namespace platform::xdg
