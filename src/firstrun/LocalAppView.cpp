#include "firstrun/LocalAppView.h"

#include "platform/Platform.h"

namespace tarnwick {

namespace {

std::optional<std::string> bundleNameIn(const platform::PropertyList::Dictionary* information) {
    if (!information)
        return std::nullopt;
    const auto it = information->find("CFBundleName");
    if (it == information->end())
        return std::nullopt;
    if (const auto* name = it->second.get<std::string>())
        return *name;
    return std::nullopt;
}

std::string appNameOf(const platform::Bundle& bundle) {
    if (auto name = bundleNameIn(bundle.localizedInfoDictionary()))
        return *name;
    if (auto name = bundleNameIn(bundle.infoDictionary()))
        return *name;
    if (auto identifier = bundle.bundleIdentifier())
        return *identifier;
    auto path = bundle.bundlePath();
    if (!path.has_filename())
        path = path.parent_path();
    return path.stem().string();
}

}  // namespace

LocalAppView LocalAppView::fromBundle(const platform::Bundle& bundle) {
    return {platform::workspace().iconForFile(bundle.bundlePath()), appNameOf(bundle)};
}

}  // namespace tarnwick
