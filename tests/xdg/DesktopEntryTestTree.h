#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/xdg/DesktopEntryDirectories.h"

namespace platform::xdg::fixtures {

// A temporary file tree shaped like a home directory and a system's
// /usr/share, removed at the end of the test.
class DesktopEntryTestTree {
  public:
    DesktopEntryTestTree() {
        std::string pattern = (std::filesystem::temp_directory_path() / "desktop-XXXXXX").string();
        root_ = ::mkdtemp(pattern.data());
    }
    ~DesktopEntryTestTree() {
        std::error_code error;
        std::filesystem::remove_all(root_, error);
    }
    DesktopEntryTestTree(const DesktopEntryTestTree&) = delete;
    DesktopEntryTestTree& operator=(const DesktopEntryTestTree&) = delete;

    const std::filesystem::path& root() const { return root_; }

    std::filesystem::path write(const std::filesystem::path& relative, std::string_view text) {
        const auto path = root_ / relative;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    // The file's bytes; empty when it can't be read. Absolute paths are
    // taken as they stand.
    std::string read(const std::filesystem::path& path) const {
        std::ifstream in(root_ / path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

    // A minimal application entry.
    std::filesystem::path writeApplication(const std::filesystem::path& relative,
                                           std::string_view name, std::string_view exec,
                                           std::string_view extra = {}) {
        return write(relative, "[Desktop Entry]\nType=Application\nName=" + std::string(name) +
                                   "\nExec=" + std::string(exec) + "\n" + std::string(extra));
    }

    DesktopEntryDirectories directories() const {
        DesktopEntryDirectories directories;
        directories.dataHome = root_ / "home/.local/share";
        directories.dataDirs = {root_ / "usr/local/share", root_ / "usr/share"};
        directories.configHome = root_ / "home/.config";
        directories.configDirs = {root_ / "etc/xdg"};
        return directories;
    }

    static constexpr const char* user = "home/.local/share/applications/";
    static constexpr const char* local = "usr/local/share/applications/";
    static constexpr const char* system = "usr/share/applications/";

  private:
    std::filesystem::path root_;
};

}  // namespace platform::xdg::fixtures
