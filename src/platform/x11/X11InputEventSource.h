#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/HandlerList.h"
#include "platform/LifetimeGuard.h"
#include "platform/MainLoop.h"
#include "platform/x11/X11Connection.h"

namespace platform::x11 {

// The X events of one connection, read on the main loop when the
// connection's descriptor turns readable and handed to every handler in
// turn. The keyboard, monitor, hot key and active-window parts share it, so
// that they share one connection and one root event mask.
class X11InputEventSource {
  public:
    using EventHandler = std::function<void(const xcb_generic_event_t&)>;
    using IdleHandler = std::function<void()>;

    X11InputEventSource(std::unique_ptr<X11Connection> connection, MainLoop& loop);
    ~X11InputEventSource();
    X11InputEventSource(const X11InputEventSource&) = delete;
    X11InputEventSource& operator=(const X11InputEventSource&) = delete;

    X11Connection& connection() { return *connection_; }
    xcb_connection_t* xcb() const { return connection_->connection(); }
    xcb_window_t root() const { return connection_->root(); }
    MainLoop& loop() { return loop_; }

    Token addEventHandler(EventHandler handler) { return eventHandlers_.add(std::move(handler)); }
    void removeEventHandler(Token token) { eventHandlers_.remove(token); }
    // Called after each batch of events has been handed out: the place to
    // collect replies that arrived with the batch.
    Token addIdleHandler(IdleHandler handler) { return idleHandlers_.add(std::move(handler)); }
    void removeIdleHandler(Token token) { idleHandlers_.remove(token); }

    // Adds event kinds to what this connection hears on the root window;
    // the mask only grows.
    void selectRootEvents(std::uint32_t eventMask);

    // Hands out every event read so far.
    void dispatchPending();
    // A waiting request may have read events off the socket into the
    // connection's queue, where the descriptor no longer tells of them:
    // hand them out one turn later.
    void dispatchSoon();

  private:
    std::unique_ptr<X11Connection> connection_;
    MainLoop& loop_;
    Token watch_;
    std::uint32_t rootEventMask_ = 0;
    bool dispatchPosted_ = false;
    HandlerList<const xcb_generic_event_t&> eventHandlers_;
    HandlerList<> idleHandlers_;
    // Tasks posted to the loop may run after the source is gone.
    LifetimeGuard lifetime_;
};

}  // namespace platform::x11
