// The archived form of a shortcut.
#include "platform/Platform.h"
#include "shortcuts/SRShortcut.h"

namespace lirixkro {

using platform::PropertyList;

namespace {

// The version of the bundle that wrote an archive, kept for later readers.
std::optional<std::string> bundleVersion() {
    auto* bundles = platform::installed().bundles;
    auto bundle = bundles ? bundles->mainBundle() : nullptr;
    const auto* info = bundle ? bundle->infoDictionary() : nullptr;
    if (!info)
        return std::nullopt;
    auto found = info->find("CFBundleVersion");
    if (found == info->end() || !found->second.string())
        return std::nullopt;
    return *found->second.string();
}

// An optional text entry: absent is fine, another type spoils the archive.
bool readText(const PropertyList::Dictionary& archive, const std::string& key,
              std::optional<std::string>& text) {
    auto found = archive.find(key);
    if (found == archive.end())
        return true;
    if (!found->second.string())
        return false;
    text = *found->second.string();
    return true;
}

}  // namespace

PropertyList SRShortcut::encode() const {
    PropertyList::Dictionary archive;
    // A program without bundle information has no version to write.
    if (auto version = bundleVersion())
        archive["version"] = *version;
    archive["keyCode"] = std::uint64_t{keyCode_};
    archive["modifierFlags"] = std::uint64_t{modifierFlags_};
    if (characters_)
        archive["characters"] = *characters_;
    if (charactersIgnoringModifiers_) {
        archive["charactersIgnoringModifiers"] = *charactersIgnoringModifiers_;
    }
    return archive;
}

SRShortcutRef SRShortcut::decode(const PropertyList& list) {
    const auto* archive = list.dictionary();
    if (!archive)
        return nullptr;
    auto keyCode = archive->find("keyCode");
    auto flags = archive->find("modifierFlags");
    if (keyCode == archive->end() || flags == archive->end())
        return nullptr;
    const auto keyCodeValue = keyCode->second.unsignedInteger();
    const auto flagsValue = flags->second.unsignedInteger();
    if (!keyCodeValue || *keyCodeValue > SRKeyCodeNone || !flagsValue)
        return nullptr;

    std::optional<std::string> characters;
    std::optional<std::string> charactersIgnoringModifiers;
    if (!readText(*archive, "characters", characters) ||
        !readText(*archive, "charactersIgnoringModifiers", charactersIgnoringModifiers)) {
        return nullptr;
    }
    return shortcutWithCode(static_cast<SRKeyCode>(*keyCodeValue), *flagsValue,
                            std::move(characters), std::move(charactersIgnoringModifiers));
}

}  // namespace lirixkro
