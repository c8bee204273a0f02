#pragma once

#include <filesystem>
#include <string>

#include "platform/LoginItemService.h"
#include "platform/MainLoop.h"

namespace platform::xdg {

// Launch at login on a freedesktop session: an autostart entry of ours in
// the user's autostart folder, which the session reads at login. The entry
// names the program by the real path of its executable. It counts as
// enabled only while it is ours and not switched off; registering writes it
// anew (atomically), unregistering removes it and reports on a later turn
// of the main loop. Failures come back as the system's text.
class XdgLoginItemService final : public LoginItemService {
  public:
    XdgLoginItemService(MainLoop& loop, std::filesystem::path entryPath,
                        std::filesystem::path executable, std::string name = "Tarnwick");

    // <config home>/autostart/<bundle identifier>.desktop
    static std::filesystem::path entryPathIn(const std::filesystem::path& configHome,
                                             const std::string& bundleIdentifier);

    // Enabled for our entry, switched on; not registered without one or
    // with ours switched off; not found for an entry that isn't ours.
    Status status() const override;
    std::string registerMainApp() override;
    void unregisterMainApp(Completion completion) override;

    const std::filesystem::path& entryPath() const { return entryPath_; }

  private:
    std::string removeEntry() const;

    MainLoop& loop_;
    std::filesystem::path entryPath_;
    std::filesystem::path executable_;
    std::string name_;
};

}  // namespace platform::xdg
