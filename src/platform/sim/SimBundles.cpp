#include "platform/sim/SimBundles.h"

namespace platform::sim {

SimBundle::SimBundle(std::filesystem::path path, std::optional<std::string> identifier,
                     std::optional<PropertyList::Dictionary> info)
    : path_(std::move(path)), identifier_(std::move(identifier)), info_(std::move(info)) {}

SimBundles::SimBundles(std::string version, std::string build) {
    setVersion(std::move(version), std::move(build));
}

void SimBundles::setVersion(std::string version, std::string build) {
    PropertyList::Dictionary info{
        {"CFBundleName", "Tarnwick"},
        {"CFBundleIdentifier", mainBundleIdentifier},
        {"CFBundleShortVersionString", std::move(version)},
        {"CFBundleVersion", std::move(build)},
        {"NSHumanReadableCopyright", "Copyright © 2024 Harrowmere. All rights reserved."},
    };
    main_ = std::make_shared<SimBundle>(mainBundlePath, mainBundleIdentifier, std::move(info));
}

std::shared_ptr<Bundle> SimBundles::bundleWithPath(const std::filesystem::path& path) {
    if (path == main_->bundlePath())
        return main_;
    auto it = bundles_.find(path.lexically_normal());
    return it == bundles_.end() ? nullptr : it->second;
}

std::shared_ptr<SimBundle> SimBundles::addBundle(const std::filesystem::path& path,
                                                 std::optional<std::string> identifier,
                                                 std::optional<PropertyList::Dictionary> info) {
    auto bundle = std::make_shared<SimBundle>(path, std::move(identifier), std::move(info));
    bundles_[path.lexically_normal()] = bundle;
    return bundle;
}

}  // namespace platform::sim
