#include "platform/x11/X11InputEventSource.h"

namespace platform::x11 {

X11InputEventSource::X11InputEventSource(std::unique_ptr<X11Connection> connection, MainLoop& loop)
    : connection_(std::move(connection)), loop_(loop) {
    watch_ =
        loop_.watchFileDescriptor(connection_->fileDescriptor(), [this] { dispatchPending(); });
}

X11InputEventSource::~X11InputEventSource() {
    loop_.unwatch(watch_);
}

void X11InputEventSource::selectRootEvents(std::uint32_t eventMask) {
    if ((rootEventMask_ | eventMask) == rootEventMask_)
        return;
    rootEventMask_ |= eventMask;
    xcb_change_window_attributes(xcb(), root(), XCB_CW_EVENT_MASK, &rootEventMask_);
    xcb_flush(xcb());
}

namespace {

// A burst of events (hundreds of windows coming at once) is handed out in
// batches of this many, one batch per turn of the main loop, so that the
// turns between them answer the keys, the pointer and the painting.
constexpr int eventsPerTurn = 256;

}  // namespace

void X11InputEventSource::dispatchPending() {
    int handed = 0;
    for (;;) {
        while (handed < eventsPerTurn) {
            const Reply<xcb_generic_event_t> event{xcb_poll_for_event(xcb())};
            if (!event)
                break;
            eventHandlers_.call(*event);
            ++handed;
        }
        idleHandlers_.call();
        if (handed >= eventsPerTurn) {
            // The rest may wait in the connection's queue, where the socket
            // won't tell of it.
            dispatchSoon();
            break;
        }
        // An idle handler that collected a reply read the socket, and any
        // event read with it waits in the queue: the socket won't say so again.
        const Reply<xcb_generic_event_t> queued(xcb_poll_for_queued_event(xcb()));
        if (!queued)
            break;
        eventHandlers_.call(*queued);
        ++handed;
    }
    xcb_flush(xcb());
    if (xcb_connection_has_error(xcb()) && watch_) {
        // A dead connection stays readable forever; stop listening to it.
        loop_.unwatch(watch_);
        watch_ = Token{};
    }
}

void X11InputEventSource::dispatchSoon() {
    if (dispatchPosted_)
        return;
    dispatchPosted_ = true;
    loop_.post(lifetime_.guard([this] {
        dispatchPosted_ = false;
        dispatchPending();
    }));
}

}  // namespace platform::x11
