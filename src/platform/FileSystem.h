#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace platform {

// Well-known directories, in the platform's numbering.
enum class SearchPathDirectory { library = 5, applicationSupport = 14 };
enum class SearchPathDomain { user = 1 };

class FileManager {
  public:
    virtual ~FileManager() = default;
    // Nothing when the directory can't be found or made.
    virtual std::optional<std::filesystem::path> urlForDirectory(SearchPathDirectory directory,
                                                                 SearchPathDomain domain,
                                                                 bool create) = 0;
    virtual bool checkResourceIsReachable(const std::filesystem::path& path) = 0;
    // The system's folders of installed applications: an application is an
    // ordinary one when its bundle lies directly in one of them.
    // Where the preference files lie, given the user's library folder.
    virtual std::filesystem::path preferencesDirectory(const std::filesystem::path& library) const {
        return library / "Preferences";
    }
    virtual std::vector<std::filesystem::path> applicationsDirectories() const {
        return {"/Applications"};
    }
};

// The desktop's file manager, showing files to the user.
class FileViewer {
  public:
    virtual ~FileViewer() = default;
    // Opens a file manager window with these files selected.
    virtual void activateFileViewerSelectingURLs(
        const std::vector<std::filesystem::path>& urls) = 0;
};

}  // namespace platform
