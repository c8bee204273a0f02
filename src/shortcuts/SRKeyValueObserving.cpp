#include "shortcuts/SRKeyValueObserving.h"

#include "platform/PropertyListCodec.h"
#include "shortcuts/SRShortcut.h"

namespace lirixkro {

quillbox::Signal<>& SRKeyPathSignals::signalFor(std::string_view keyPath) {
    auto found = signals_.find(keyPath);
    if (found == signals_.end()) {
        found =
            signals_.emplace(std::string(keyPath), std::make_unique<quillbox::Signal<>>()).first;
    }
    return *found->second;
}

void SRKeyPathSignals::emit(std::string_view keyPath) const {
    if (auto found = signals_.find(keyPath); found != signals_.end())
        found->second->emit();
}

std::size_t SRKeyPathSignals::observerCount(std::string_view keyPath) const {
    auto found = signals_.find(keyPath);
    return found == signals_.end() ? 0 : found->second->slotCount();
}

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
        signal = &changes_.signalFor(keyPath);
    }
    signal->emit();
}

platform::Subscription SRKeyValueStore::observeKeyPath(std::string_view keyPath,
                                                       std::function<void()> changed) {
    std::lock_guard lock(lock_);
    return changes_.signalFor(keyPath).connect(std::move(changed));
}

std::size_t SRKeyValueStore::observerCount(std::string_view keyPath) const {
    std::lock_guard lock(lock_);
    return changes_.observerCount(keyPath);
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
