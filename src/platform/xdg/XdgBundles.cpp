#include "platform/xdg/XdgBundles.h"

#include "platform/xdg/DefaultFileManager.h"
#include "platform/xdg/DesktopEntryExec.h"

namespace platform::xdg {

namespace {

class FixedBundle : public Bundle {
  public:
    FixedBundle(std::string identifier, std::filesystem::path path,
                PropertyList::Dictionary information)
        : identifier_(std::move(identifier)),
          path_(std::move(path)),
          information_(std::move(information)) {}

    std::optional<std::string> bundleIdentifier() const override { return identifier_; }
    std::filesystem::path bundlePath() const override { return path_; }
    const PropertyList::Dictionary* infoDictionary() const override { return &information_; }

  private:
    std::string identifier_;
    std::filesystem::path path_;
    PropertyList::Dictionary information_;
};

// The program's own bundle is its executable. Its helpers lie beside it in
// a build tree, and in their own folder once installed.
class MainBundle final : public FixedBundle {
  public:
    MainBundle(std::string identifier, std::filesystem::path executable,
               PropertyList::Dictionary information, std::filesystem::path helpersDirectory)
        : FixedBundle(std::move(identifier), std::move(executable), std::move(information)),
          helpersDirectory_(std::move(helpersDirectory)) {}

    std::filesystem::path pathForAuxiliaryExecutable(const std::string& name) const override {
        const auto folder = bundlePath().parent_path();
        std::error_code ignored;
        if (std::filesystem::exists(folder / name, ignored))
            return folder / name;
        return (folder / helpersDirectory_ / name).lexically_normal();
    }

  private:
    std::filesystem::path helpersDirectory_;
};

}  // namespace

XdgBundles::XdgBundles(MainBundleInfo main, DesktopEntryDirectories directories,
                       DesktopEntryLocale locale)
    : directories_(std::move(directories)), locale_(std::move(locale)) {
    main_ = std::make_shared<MainBundle>(
        mainBundleIdentifier, main.executable,
        PropertyList::Dictionary{
            {"CFBundleName", "Tarnwick"},
            {"CFBundleIdentifier", mainBundleIdentifier},
            {"CFBundleExecutable", main.executable.filename().string()},
            {"CFBundleShortVersionString", main.shortVersion},
            {"CFBundleVersion", main.version},
            {"NSHumanReadableCopyright", main.copyright},
        },
        main.helpersDirectory);
}

std::shared_ptr<Bundle> XdgBundles::mainBundle() {
    return main_;
}

std::shared_ptr<Bundle> XdgBundles::bundleWithPath(const std::filesystem::path& path) {
    if (fileManager_ && path.lexically_normal() == DefaultFileManager::finderBundlePath()) {
        const std::string identifier = DefaultFileManager::finderBundleIdentifier;
        return std::make_shared<FixedBundle>(identifier, path,
                                             infoDictionary(*fileManager_, identifier));
    }
    const auto id = idOfFile(path);
    const auto entry = DesktopEntry::load(path, id, locale_);
    if (!entry)
        return nullptr;
    const auto identifier = entry->idWithoutSuffix();
    return std::make_shared<FixedBundle>(identifier, path, infoDictionary(*entry, identifier));
}

PropertyList::Dictionary XdgBundles::infoDictionary(const DesktopEntry& entry,
                                                    const std::string& bundleIdentifier) {
    PropertyList::Dictionary information{
        {"CFBundleName", entry.name},
        {"CFBundleIdentifier", bundleIdentifier},
        {"LSUIElement", entry.noDisplay},
        {"LSBackgroundOnly", entry.type != DesktopEntry::Type::application || entry.hidden},
    };
    if (auto program = desktopEntryProgramName(entry.exec)) {
        information.emplace("CFBundleExecutable", std::move(*program));
    }
    return information;
}

std::string XdgBundles::idOfFile(const std::filesystem::path& path) const {
    for (const auto& directory : directories_.applicationsDirectories()) {
        if (auto id = desktopFileId(directory, path))
            return *id;
    }
    return path.filename().string();
}

}  // namespace platform::xdg
