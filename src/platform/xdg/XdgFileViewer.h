#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/xdg/DefaultFileManager.h"
#include "platform/xdg/XdgProcessLauncher.h"

namespace platform::xdg {

// Shows files in the desktop's file manager. A file manager that offers the
// session bus's file manager interface is asked to show the items
// selected; the call runs in a child process, so the loop never waits for
// it. Where that call fails (no such service, no session bus), the default
// file manager opens each folder that holds an item instead.
class XdgFileViewer final : public FileViewer {
  public:
    XdgFileViewer(XdgProcessLauncher& launcher, std::optional<DefaultFileManager> fileManager)
        : launcher_(launcher), fileManager_(std::move(fileManager)) {}

    void activateFileViewerSelectingURLs(const std::vector<std::filesystem::path>& urls) override;

    // The session bus call that asks for the items to be shown.
    static std::vector<std::string> showItemsCommand(
        const std::vector<std::filesystem::path>& urls);
    // The command that opens a folder with the file manager; empty without
    // one.
    std::vector<std::string> openFolderCommand(const std::filesystem::path& folder) const;
    // The folders that hold the items, each once, in the items' order.
    static std::vector<std::filesystem::path> foldersHolding(
        const std::vector<std::filesystem::path>& urls);
    // The file URI of an absolute path, with everything but unreserved
    // characters and '/' percent-encoded.
    static std::string fileURI(const std::filesystem::path& path);

  private:
    XdgProcessLauncher& launcher_;
    std::optional<DefaultFileManager> fileManager_;
};

}  // namespace platform::xdg
