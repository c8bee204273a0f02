#include "platform/xdg/XdgRunningApplication.h"

#include "platform/xdg/ProcessInfo.h"

namespace platform::xdg {

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

XdgRunningApplication::Identity XdgRunningApplication::identityOf(const DesktopEntry& entry,
                                                                  const DesktopEntryIcons& icons) {
    return Identity{entry.idWithoutSuffix(), entry.path, entry.name, iconOf(entry, icons),
                    policyOf(entry)};
}

XdgRunningApplication::Identity XdgRunningApplication::finderIdentityOf(
    const DesktopEntry& fileManager, const DesktopEntryIcons& icons) {
    return Identity{DefaultFileManager::finderBundleIdentifier,
                    DefaultFileManager::finderBundlePath(), fileManager.name,
                    iconOf(fileManager, icons), ActivationPolicy::regular};
}

XdgRunningApplication::Identity XdgRunningApplication::identityOfProcess(pid_t pid) {
    const auto process = ProcessInfo::read(pid);
    const auto names = process.executableNames();
    Identity identity;
    if (!names.empty())
        identity.localizedName = names.front();
    return identity;
}

XdgRunningApplication::Identity XdgRunningApplication::accessoryIdentityOfProcess(pid_t pid) {
    auto identity = identityOfProcess(pid);
    identity.activationPolicy = ActivationPolicy::accessory;
    return identity;
}

XdgRunningApplication::Identity XdgRunningApplication::identityFor(
    pid_t pid, const DesktopEntry* entry, const DefaultFileManager* fileManager,
    const DesktopEntryIcons& icons) {
    if (!entry)
        return identityOfProcess(pid);
    if (fileManager && fileManager->entry().id == entry->id) {
        return finderIdentityOf(*entry, icons);
    }
    return identityOf(*entry, icons);
}

std::string XdgRunningApplication::description() const {
    return "<XdgRunningApplication pid=" + std::to_string(pid_) +
           " id=" + identity_.bundleIdentifier.value_or("(none)") + ">";
}

bool XdgRunningApplication::followTermination(
    ProcessWatcher& watcher,
    std::function<void(const std::shared_ptr<XdgRunningApplication>&)> onTerminated) {
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

}  // namespace platform::xdg
