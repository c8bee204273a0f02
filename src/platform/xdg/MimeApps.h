#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/xdg/DesktopEntryDirectories.h"
#include "platform/xdg/DesktopEntryIndex.h"

namespace platform::xdg {

// The user's and the system's choices of application per content type: the
// mimeapps.list files, with the current desktop's own "<desktop>-mimeapps.list"
// before the general one at each level.
class MimeApps {
  public:
    // One mimeapps.list file: desktop-file ids per content type.
    struct List {
        std::map<std::string, std::vector<std::string>, std::less<>> defaults;
        std::map<std::string, std::vector<std::string>, std::less<>> added;
        std::map<std::string, std::vector<std::string>, std::less<>> removed;
    };

    // The lists in these files, most important first; missing or damaged
    // files count as empty.
    explicit MimeApps(const std::vector<std::filesystem::path>& files);
    explicit MimeApps(const DesktopEntryDirectories& directories)
        : MimeApps(listFiles(directories)) {}

    // Where the lists lie, most important first: the config home, the config
    // directories, the data home's and the data directories' applications
    // folders; at each, the current desktops' own lists first.
    static std::vector<std::filesystem::path> listFiles(const DesktopEntryDirectories& directories);
    static List parseList(std::string_view text);

    // The application that opens this content type: the first installed
    // default of the most important list that names one; else the first
    // installed added association; else the first installed application
    // that declares the type. Associations removed at a level don't count
    // from that level down. Null when nothing handles the type.
    const DesktopEntry* defaultApplication(std::string_view contentType,
                                           const DesktopEntryIndex& index) const;
    // Every installed application for the content type, in the order above
    // (the default first), each once: the ones to fall back on in turn.
    std::vector<const DesktopEntry*> applicationsFor(std::string_view contentType,
                                                     const DesktopEntryIndex& index) const;
    // The installed applications the lists name for the content type, as
    // defaults or added associations, in the order above; they begin
    // applicationsFor, before the applications that merely declare the type.
    std::vector<const DesktopEntry*> associatedApplications(std::string_view contentType,
                                                            const DesktopEntryIndex& index) const;

  private:
    // The ids whose association with the type some list removes.
    std::set<std::string, std::less<>> removedIds(std::string_view contentType) const;

    std::vector<List> lists_;
};

}  // namespace platform::xdg
