#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "platform/Event.h"
#include "platform/HandlerList.h"
#include "platform/IntervalGate.h"
#include "platform/x11/X11InputEventSource.h"
#include "platform/x11/X11InputEventTranslator.h"
#include "platform/x11/X11KeyboardLayouts.h"

namespace platform::x11 {

// The desktop's keyboard and pointer as raw XInput2 events on the root
// window, whichever window has the focus, turned into the program's events
// for its listeners. Keys are heard for as long as this object lives (the
// modifier state depends on them); pointer motion only while a listener
// wants mouse-moved events, so an idle pointer wakes nobody.
//
// Raw motion carries device deltas, not positions. The position comes from
// a pointer query sent when motion arrives and collected when its reply
// comes in with a later batch of events: no event waits for a round trip,
// and motion arriving while a query is out is folded into the next one.
// A moving pointer is sampled at most once a frame: after a sample, raw
// motion is muted until the frame is over, then one query takes the place
// the pointer came to, so that a fast mouse wakes the program once a frame
// instead of once per device event, and a still one not at all.
//
// A key press also sends a query while motion isn't heard, so that the
// place of the pointer as a chord completes is at hand when a listener of
// the chord's last key asks for it.
class X11RawInput {
  public:
    using Listener = std::function<void(const Event&)>;

    // Nothing when the server lacks XInput 2.2.
    static std::unique_ptr<X11RawInput> create(X11InputEventSource& source,
                                               X11KeyboardLayouts* layouts);
    ~X11RawInput();
    X11RawInput(const X11RawInput&) = delete;
    X11RawInput& operator=(const X11RawInput&) = delete;

    Token addListener(EventMask mask, Listener listener);
    void removeListener(Token token);

    CGPoint mouseLocation();
    ModifierFlags modifierFlags() const { return translator_.modifierFlags(); }

    // One event of the connection; events of other kinds are ignored.
    void handleEvent(const xcb_generic_event_t& event);
    // Collects a pointer reply that came in, and hands out its event.
    void collectPointer();

  private:
    X11RawInput(X11InputEventSource& source, X11KeyboardLayouts* layouts, std::uint8_t opcode);

    void seedFromServer();
    void updateSelection();
    void handleRawMotion(xcb_timestamp_t time);
    void sampleAfterFrame();
    void endMutedFrame();
    void handleKeyPress(xcb_timestamp_t time);
    bool placeIsCurrent() const;
    void queryPointer();
    void takePointerReply(Reply<xcb_query_pointer_reply_t> reply);
    void deliver(const Event& event);

    X11InputEventSource& source_;
    std::uint8_t opcode_;
    X11InputEventTranslator translator_;
    HandlerList<const Event&> listeners_;
    std::map<std::uint64_t, EventMask> masks_;
    bool motionSelected_ = false;
    // One pointer query per frame; while a run at the frame's end waits,
    // raw motion is muted.
    IntervalGate frameGate_;
    // The server time of the key press the pending or last query was sent
    // for; the place it tells stays current for the rest of that chord.
    std::optional<xcb_timestamp_t> queriedAtKey_;
    xcb_timestamp_t lastKeyTime_ = 0;
    bool deliveringKey_ = false;
    double rootHeight_;
    CGPoint pointer_;  // top-left, root window coordinates
    std::optional<unsigned int> pendingQuery_;
    bool movedSinceQuery_ = true;
    bool moveToDeliver_ = false;
    xcb_timestamp_t motionTime_ = 0;
    Token eventHandler_;
    Token idleHandler_;
};

}  // namespace platform::x11
