#include "shortcuts/SRKeyValueObserving.h"

#include "platform/PropertyListCodec.h"
#include "shortcuts/SRShortcut.h"

namespace lirixkro {

SRObservedValue SRKeyValueStore::valueForKeyPath(std::string_view keyPath) const {
    std::lock_guard lock(lock_);
    auto found = values_.find(keyPath);
    return found == values_.end() ? SRObservedValue(SRNull{}) : found->second;
}

void SRKeyValueStore::setValueForKeyPath(const SRObservedValue& value, std::string_view keyPath) {
    quillbox::Signal<>* signal;
    {
        std::lock_guard lock(lock_);
        values_.insert_or_assign(std::string(keyPath), value);
        signal = &signalFor(keyPath);
    }
    signal->emit();
}

platform::Subscription SRKeyValueStore::observeKeyPath(std::string_view keyPath,
                                                       std::function<void()> changed) {
    std::lock_guard lock(lock_);
    return signalFor(keyPath).connect(std::move(changed));
}

std::size_t SRKeyValueStore::observerCount(std::string_view keyPath) const {
    std::lock_guard lock(lock_);
    auto found = changes_.find(keyPath);
    return found == changes_.end() ? 0 : found->second->slotCount();
}

quillbox::Signal<>& SRKeyValueStore::signalFor(std::string_view keyPath) {
    auto found = changes_.find(keyPath);
    if (found == changes_.end()) {
        found =
            changes_.emplace(std::string(keyPath), std::make_unique<quillbox::Signal<>>()).first;
    }
    return *found->second;
}

SRShortcutRef SRShortcutFromObservedValue(const SRObservedValue& value) {
    if (const auto* shortcut = std::get_if<SRShortcutRef>(&value))
        return *shortcut;
    if (const auto* dictionary = std::get_if<SRDictionary>(&value))
        return SRShortcut::shortcutWithDictionary(*dictionary);
    if (const auto* data = std::get_if<SRData>(&value)) {
        const auto archive = platform::PropertyListCodec::decode(data->bytes);
        return archive ? SRShortcut::decode(*archive) : nullptr;
    }
    return nullptr;
}

}  // namespace lirixkro
