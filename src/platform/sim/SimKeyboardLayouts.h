#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/HandlerList.h"
#include "platform/KeyboardLayout.h"
#include "platform/LifetimeGuard.h"
#include "platform/MainLoop.h"
#include "platform/sim/SimKeyboardLayoutTables.h"

namespace platform::sim {

// The keyboard layouts of the simulated desktop: US, German, French and
// Russian, switchable while running. A non-Latin current layout has US as its
// ASCII-capable layout. Every translation any of its sources makes is
// counted, so that tests can tell whether a layout was asked at all.
class SimKeyboardLayouts final : public KeyboardLayouts {
  public:
    // Starts on US; layout changes are told on the loop.
    explicit SimKeyboardLayouts(MainLoop& loop);
    ~SimKeyboardLayouts() override;
    SimKeyboardLayouts(const SimKeyboardLayouts&) = delete;
    SimKeyboardLayouts& operator=(const SimKeyboardLayouts&) = delete;

    std::shared_ptr<InputSource> copyCurrentKeyboardLayoutInputSource() override;
    std::shared_ptr<InputSource> copyCurrentASCIICapableKeyboardLayoutInputSource() override;
    Subscription observeLayoutChanges(std::function<void()> handler) override;

    // Makes the layout with this identifier current. False for an unknown
    // identifier, which changes nothing.
    bool selectLayout(std::string_view identifier);
    const std::string& currentLayoutIdentifier() const;

    // Translations made by any source of this object since the last reset.
    std::size_t translationCount() const { return counter_->load(); }
    void resetTranslationCount() { counter_->store(0); }

    // With sources unavailable, both copies give null, as when the system
    // can't hand out an input source.
    void setSourcesUnavailable(bool unavailable);

  private:
    std::shared_ptr<InputSource> sourceFor(const SimKeyboardLayoutTable& table);

    MainLoop& loop_;
    std::shared_ptr<std::atomic<std::size_t>> counter_;
    // Sources are handed out from any thread; the lock covers the made
    // sources and the choice of the current table.
    mutable std::mutex lock_;
    std::map<std::string, std::shared_ptr<InputSource>, std::less<>> sources_;
    const SimKeyboardLayoutTable* current_;
    bool unavailable_ = false;
    HandlerList<> observers_;
    // Tasks posted to the loop may run after the layouts are gone.
    LifetimeGuard lifetime_;
};

// One table-driven layout. Shift and Option change the text; Command and
// Control pass through. Key codes above 127 are refused with a status, keys
// the table lacks give no text.
class SimInputSource final : public InputSource {
  public:
    static constexpr std::int32_t invalidKeyCodeStatus = -50;

    SimInputSource(const SimKeyboardLayoutTable& table,
                   std::shared_ptr<std::atomic<std::size_t>> counter);

    std::optional<std::string> identifier() const override { return table_.identifier; }
    KeyTranslation translate(KeyCode keyCode, std::uint32_t modifierState) const override;

  private:
    const SimKeyboardLayoutTable& table_;
    std::shared_ptr<std::atomic<std::size_t>> counter_;
};

}  // namespace platform::sim
