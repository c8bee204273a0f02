#include "platform/sim/SimKeyboardLayouts.h"

#include <algorithm>

namespace platform::sim {

namespace {

const SimKeyboardLayoutTable* findTable(std::string_view identifier) {
    const auto& tables = simKeyboardLayoutTables();
    auto found = std::find_if(tables.begin(), tables.end(),
                              [&](const auto& table) { return table.identifier == identifier; });
    return found == tables.end() ? nullptr : &*found;
}

const std::string& firstNonEmpty(const std::string& preferred, const std::string& fallback) {
    return preferred.empty() ? fallback : preferred;
}

}  // namespace

SimInputSource::SimInputSource(const SimKeyboardLayoutTable& table,
                               std::shared_ptr<std::atomic<std::size_t>> counter)
    : table_(table), counter_(std::move(counter)) {}

KeyTranslation SimInputSource::translate(KeyCode keyCode, std::uint32_t modifierState) const {
    ++*counter_;
    if (keyCode > 127)
        return {invalidKeyCodeStatus, {}};
    auto found = table_.keys.find(keyCode);
    if (found == table_.keys.end())
        return {};

    const SimKeyTexts& texts = found->second;
    const bool shift = modifierState & keyModifierState::shift;
    const bool option = modifierState & keyModifierState::option;
    const std::string& shifted = firstNonEmpty(texts.shift, texts.plain);
    if (shift && option)
        return {0, firstNonEmpty(texts.shiftOption, shifted)};
    if (option)
        return {0, firstNonEmpty(texts.option, texts.plain)};
    if (shift)
        return {0, shifted};
    return {0, texts.plain};
}

SimKeyboardLayouts::SimKeyboardLayouts(MainLoop& loop)
    : loop_(loop),
      counter_(std::make_shared<std::atomic<std::size_t>>(0)),
      current_(findTable(layoutIdentifier::us)) {}

SimKeyboardLayouts::~SimKeyboardLayouts() = default;

std::shared_ptr<InputSource> SimKeyboardLayouts::sourceFor(const SimKeyboardLayoutTable& table) {
    auto& source = sources_[table.identifier];
    if (!source)
        source = std::make_shared<SimInputSource>(table, counter_);
    return source;
}

std::shared_ptr<InputSource> SimKeyboardLayouts::copyCurrentKeyboardLayoutInputSource() {
    std::lock_guard guard(lock_);
    if (unavailable_)
        return nullptr;
    return sourceFor(*current_);
}

std::shared_ptr<InputSource>
SimKeyboardLayouts::copyCurrentASCIICapableKeyboardLayoutInputSource() {
    std::lock_guard guard(lock_);
    if (unavailable_)
        return nullptr;
    return sourceFor(current_->asciiCapable ? *current_ : *findTable(layoutIdentifier::us));
}

const std::string& SimKeyboardLayouts::currentLayoutIdentifier() const {
    std::lock_guard guard(lock_);
    return current_->identifier;
}

void SimKeyboardLayouts::setSourcesUnavailable(bool unavailable) {
    std::lock_guard guard(lock_);
    unavailable_ = unavailable;
}

Subscription SimKeyboardLayouts::observeLayoutChanges(std::function<void()> handler) {
    return observers_.subscribe(std::move(handler));
}

bool SimKeyboardLayouts::selectLayout(std::string_view identifier) {
    const auto* table = findTable(identifier);
    if (!table)
        return false;
    {
        std::lock_guard guard(lock_);
        if (table == current_)
            return true;
        current_ = table;
    }
    loop_.post(lifetime_.guard([this] { observers_.call(); }));
    return true;
}

}  // namespace platform::sim
