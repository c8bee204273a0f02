#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/Event.h"
#include "platform/Subscription.h"
#include "shortcuts/SRShortcutMonitor.h"

namespace lirixkro {

// How a tap takes events: filtering actively, so that an event an action
// performed for is swallowed, or only listening.
enum class SREventTapOptions : std::uint32_t { defaultTap = 0, listenOnly = 1 };

// Shortcuts for the whole desktop through an event tap: every key down, key
// up and flags change passes the monitor, so it serves shortcuts of
// modifier keys alone, which hot keys can't. The tap is on while any
// shortcut is in use.
//
// The platform's taps only listen (X11 can show a client every key but
// can't keep one from the others), so a tap asked to filter actively still
// lets every event pass.
class SRAXGlobalShortcutMonitor : public SRShortcutMonitor {
  public:
    // The tap's types for a tap that the system turned off.
    static constexpr std::int64_t tapDisabledByTimeout = -2;
    static constexpr std::int64_t tapDisabledByUserInput = -1;
    // Key down, key up and flags changed.
    static constexpr platform::EventMask eventMask = 0x1C00;

    // An actively filtering tap; null when the tap can't be made.
    static std::shared_ptr<SRAXGlobalShortcutMonitor> make();
    static std::shared_ptr<SRAXGlobalShortcutMonitor> makeWithTapOptions(SREventTapOptions options);

    ~SRAXGlobalShortcutMonitor() override;

    // Performs the enabled actions of the event's shortcut, latest added
    // first. The event to pass on, or nothing when an action swallowed it.
    std::optional<platform::Event> handleEvent(const platform::Event& event);
    // The tap's callback: a type of the event, or one of the tap's own
    // notifications.
    std::optional<platform::Event> tapCallback(std::int64_t type, const platform::Event& event);

    bool isTapEnabled() const;
    // Whether the tap swallows events that an action performed for.
    bool isActivelyFiltering() const { return activelyFiltering_; }
    SREventTapOptions tapOptions() const { return options_; }

  protected:
    explicit SRAXGlobalShortcutMonitor(SREventTapOptions options);
    void didAddShortcut(const SRShortcutRef& shortcut) override;
    void willRemoveShortcut(const SRShortcutRef& shortcut) override;

  private:
    bool createTap();
    void setTapEnabled(bool enabled);

    SREventTapOptions options_;
    bool activelyFiltering_ = false;
    bool tapEnabled_ = false;
    platform::Subscription eventTap_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace lirixkro
