#include "platform/xdg/XdgFileViewer.h"

#include <algorithm>

#include "platform/xdg/DesktopEntryExec.h"

namespace platform::xdg {

namespace {

bool isUnreserved(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~';
}

// The item itself when it names no file (a trailing '/'), else the item.
std::filesystem::path withoutTrailingSeparator(const std::filesystem::path& path) {
    auto normal = path.lexically_normal();
    if (!normal.has_filename() && normal.has_parent_path() && normal != normal.root_path())
        normal = normal.parent_path();
    return normal;
}

}  // namespace

std::string XdgFileViewer::fileURI(const std::filesystem::path& path) {
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string uri = "file://";
    for (const unsigned char c : path.string()) {
        if (isUnreserved(c) || c == '/') {
            uri += static_cast<char>(c);
        } else {
            uri += '%';
            uri += hex[c >> 4];
            uri += hex[c & 0xF];
        }
    }
    return uri;
}

std::vector<std::string> XdgFileViewer::showItemsCommand(
    const std::vector<std::filesystem::path>& urls) {
    // Commas separate the array's items; the URIs carry theirs encoded.
    std::string items;
    for (const auto& url : urls)
        items += (items.empty() ? "" : ",") + fileURI(url);
    return {"dbus-send",
            "--session",
            "--print-reply",
            "--reply-timeout=5000",
            "--dest=org.freedesktop.FileManager1",
            "--type=method_call",
            "/org/freedesktop/FileManager1",
            "org.freedesktop.FileManager1.ShowItems",
            "array:string:" + items,
            "string:"};
}

std::vector<std::filesystem::path> XdgFileViewer::foldersHolding(
    const std::vector<std::filesystem::path>& urls) {
    std::vector<std::filesystem::path> folders;
    for (const auto& url : urls) {
        const auto item = withoutTrailingSeparator(url);
        const auto folder = item.has_parent_path() ? item.parent_path() : item;
        if (std::find(folders.begin(), folders.end(), folder) == folders.end())
            folders.push_back(folder);
    }
    return folders;
}

std::vector<std::string> XdgFileViewer::openFolderCommand(
    const std::filesystem::path& folder) const {
    if (!fileManager_)
        return {};
    auto commandLine = desktopEntryCommandLine(fileManager_->entry().exec);
    if (!commandLine.empty())
        commandLine.push_back(folder.string());
    return commandLine;
}

void XdgFileViewer::activateFileViewerSelectingURLs(
    const std::vector<std::filesystem::path>& urls) {
    if (urls.empty())
        return;
    std::vector<std::vector<std::string>> fallback;
    for (const auto& folder : foldersHolding(urls)) {
        if (auto command = openFolderCommand(folder); !command.empty())
            fallback.push_back(std::move(command));
    }
    // The launcher keeps the handler, so the handler may count on it.
    auto& launcher = launcher_;
    const auto openFolders = [&launcher, fallback] {
        for (const auto& command : fallback)
            launcher.spawn(command, {{}, true});
    };
    const auto call = launcher_.spawn(showItemsCommand(urls), {[openFolders](int status) {
                                                                   if (status != 0)
                                                                       openFolders();
                                                               },
                                                               true});
    if (!call)
        openFolders();
}

}  // namespace platform::xdg
