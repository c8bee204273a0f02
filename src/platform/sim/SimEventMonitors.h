#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>

#include "platform/EventMonitors.h"
#include "platform/HandlerList.h"
#include "platform/MainLoop.h"

namespace platform::sim {

// The simulated desktop's keyboard and pointer. Tests inject events; they
// reach the monitors at once, in the order the monitors were added. As on
// the real desktop, local monitors see an event only while our application
// is active (the event goes to our windows), global ones only while another
// application is.
class SimEventMonitors final : public EventMonitors {
  public:
    // isOurApplicationActive decides which kind of monitor sees an event.
    SimEventMonitors(MainLoop& loop, std::function<bool()> isOurApplicationActive);

    Token addGlobalMonitor(EventMask mask, GlobalHandler handler) override;
    Token addLocalMonitor(EventMask mask, LocalHandler handler) override;
    void removeMonitor(Token monitor) override;
    CGPoint mouseLocation() const override { return mouseLocation_; }
    ModifierFlags modifierFlags() const override { return modifierFlags_; }

    // Injection. Each returns the event as it reached its destination: for
    // our own application after the local monitors had their say (nothing
    // when one swallowed it), for another application unchanged.
    std::optional<Event> keyDown(KeyCode keyCode, ModifierFlags flags = 0,
                                 std::string characters = {},
                                 std::string charactersIgnoringModifiers = {},
                                 bool isARepeat = false);
    std::optional<Event> keyUp(KeyCode keyCode, ModifierFlags flags = 0,
                               std::string characters = {},
                               std::string charactersIgnoringModifiers = {});
    // A modifier key went down or up; flags are those held afterwards.
    std::optional<Event> flagsChanged(ModifierFlags flags, KeyCode keyCode = 0);
    std::optional<Event> mouseMoved(CGPoint location);
    // Any event: the pointer follows mouse events, the held modifiers follow
    // keyboard events.
    std::optional<Event> dispatch(Event event);

    // Moves the pointer without an event, as a test set-up does.
    void setMouseLocation(CGPoint location) { mouseLocation_ = location; }
    // While set, the platform refuses new monitors (an empty token).
    void setRefusesMonitors(bool refuses) { refusesMonitors_ = refuses; }

    std::size_t globalMonitorCount() const { return monitors_.size() - localMonitors_.size(); }
    std::size_t localMonitorCount() const { return localMonitors_.size(); }

  private:
    void track(const Event& event);

    MainLoop& loop_;
    std::function<bool()> isOurApplicationActive_;
    // Both kinds in one list, told whether the event goes to our
    // application. A local monitor passes the event on to the next, changed
    // or not; once one swallows it (nothing), the rest don't see it.
    HandlerList<bool, std::optional<Event>&> monitors_;
    std::set<std::uint64_t> localMonitors_;
    CGPoint mouseLocation_;
    ModifierFlags modifierFlags_ = 0;
    bool refusesMonitors_ = false;
};

}  // namespace platform::sim
