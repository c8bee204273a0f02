#include "platform/x11/X11RunningApplication.h"

#include "platform/x11/ProcessInfo.h"

namespace platform::x11 {

namespace {

ActivationPolicy policyOf(const DesktopEntry& entry) {
    if (entry.type != DesktopEntry::Type::application || entry.hidden) {
        return ActivationPolicy::prohibited;
    }
    return entry.noDisplay ? ActivationPolicy::accessory : ActivationPolicy::regular;
}

std::optional<Image> iconOf(const DesktopEntry& entry, const DesktopEntryIcons& icons) {
    if (!entry.icon)
        return std::nullopt;
    const auto file = icons.find(*entry.icon);
    return file ? std::optional(Image::file(*file)) : std::nullopt;
}

}  // namespace

X11RunningApplication::Identity X11RunningApplication::identityOf(const DesktopEntry& entry,
                                                                  const DesktopEntryIcons& icons) {
    return Identity{entry.idWithoutSuffix(), entry.path, entry.name, iconOf(entry, icons),
                    policyOf(entry)};
}

X11RunningApplication::Identity X11RunningApplication::finderIdentityOf(
    const DesktopEntry& fileManager, const DesktopEntryIcons& icons) {
    return Identity{DefaultFileManager::finderBundleIdentifier,
                    DefaultFileManager::finderBundlePath(), fileManager.name,
                    iconOf(fileManager, icons), ActivationPolicy::regular};
}

X11RunningApplication::Identity X11RunningApplication::identityOfProcess(pid_t pid) {
    const auto process = ProcessInfo::read(pid);
    const auto names = process.executableNames();
    Identity identity;
    if (!names.empty())
        identity.localizedName = names.front();
    return identity;
}

X11RunningApplication::Identity X11RunningApplication::identityFor(
    pid_t pid, const DesktopEntry* entry, const DefaultFileManager* fileManager,
    const DesktopEntryIcons& icons) {
    if (!entry)
        return identityOfProcess(pid);
    if (fileManager && fileManager->entry().id == entry->id) {
        return finderIdentityOf(*entry, icons);
    }
    return identityOf(*entry, icons);
}

std::string X11RunningApplication::description() const {
    return "<X11RunningApplication pid=" + std::to_string(pid_) +
           " id=" + identity_.bundleIdentifier.value_or("(none)") + ">";
}

bool X11RunningApplication::followTermination(
    ProcessWatcher& watcher,
    std::function<void(const std::shared_ptr<X11RunningApplication>&)> onTerminated) {
    return watcher.watch(pid_,
                         [weak = weak_from_this(), onTerminated = std::move(onTerminated)](pid_t) {
                             const auto application = weak.lock();
                             if (!application)
                                 return;
                             application->markTerminated();
                             if (onTerminated)
                                 onTerminated(application);
                         });
}

}  // namespace platform::x11
