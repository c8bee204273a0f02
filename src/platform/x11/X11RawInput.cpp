#include "platform/x11/X11RawInput.h"

#include <xcb/xcbext.h>
#include <xcb/xinput.h>

#include "platform/x11/XkbProtocol.h"

namespace platform::x11 {

namespace {

constexpr EventMask keyboardMask = eventMaskFor(EventType::keyDown) |
                                   eventMaskFor(EventType::keyUp) |
                                   eventMaskFor(EventType::flagsChanged);
constexpr EventMask motionMask = eventMaskFor(EventType::mouseMoved);

// The pointer's place is sampled at most this often while it moves.
constexpr double frameSeconds = 1.0 / 60;
// A place asked for at a key press stays current for the chord it begins:
// the hand is on the keys, not the mouse.
constexpr xcb_timestamp_t chordMilliseconds = 500;

bool hasXInput22(xcb_connection_t* connection) {
    const auto reply = awaitReply(connection, xcb_input_xi_query_version_reply,
                                  xcb_input_xi_query_version(connection, 2, 2));
    return reply &&
           (reply->major_version > 2 || (reply->major_version == 2 && reply->minor_version >= 2));
}

void selectRawEvents(xcb_connection_t* connection, xcb_window_t root, bool withMotion) {
    struct {
        xcb_input_event_mask_t header;
        std::uint32_t bits;
    } mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
           XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE |
               (withMotion ? std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_MOTION} : 0u)};
    xcb_input_xi_select_events(connection, root, 1, &mask.header);
    xcb_flush(connection);
}

}  // namespace

std::unique_ptr<X11RawInput> X11RawInput::create(X11InputEventSource& source,
                                                 X11KeyboardLayouts* layouts) {
    const xcb_query_extension_reply_t* extension =
        xcb_get_extension_data(source.xcb(), &xcb_input_id);
    if (!extension || !extension->present || !hasXInput22(source.xcb()))
        return nullptr;
    return std::unique_ptr<X11RawInput>(new X11RawInput(source, layouts, extension->major_opcode));
}

X11RawInput::X11RawInput(X11InputEventSource& source, X11KeyboardLayouts* layouts,
                         std::uint8_t opcode)
    : source_(source),
      opcode_(opcode),
      translator_([layouts]() -> const XkbInputSource* {
          return layouts ? layouts->currentSource().get() : nullptr;
      }),
      frameGate_(source.loop(), frameSeconds, [this] { endMutedFrame(); }),
      rootHeight_(source.connection().screen()->height_in_pixels) {
    source_.selectRootEvents(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    selectRawEvents(source_.xcb(), source_.root(), false);
    seedFromServer();
    eventHandler_ =
        source_.addEventHandler([this](const xcb_generic_event_t& event) { handleEvent(event); });
    idleHandler_ = source_.addIdleHandler([this] { collectPointer(); });
    source_.dispatchSoon();
}

X11RawInput::~X11RawInput() {
    source_.removeEventHandler(eventHandler_);
    source_.removeIdleHandler(idleHandler_);
    if (pendingQuery_)
        xcb_discard_reply(source_.xcb(), *pendingQuery_);
}

void X11RawInput::seedFromServer() {
    xcb_connection_t* connection = source_.xcb();
    auto keysCookie = xcb_query_keymap(connection);
    auto stateCookie = xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD);
    const auto keys = awaitReply(connection, xcb_query_keymap_reply, keysCookie);
    const auto state = awaitReply(connection, xcb_xkb_get_state_reply, stateCookie);
    const bool capsLockOn = state && (state->lockedMods & XCB_MOD_MASK_LOCK);
    if (keys)
        translator_.seed(keys->keys, capsLockOn);
}

Token X11RawInput::addListener(EventMask mask, Listener listener) {
    const Token token = listeners_.add([mask, listener = std::move(listener)](const Event& event) {
        if (mask & eventMaskFor(event.type))
            listener(event);
    });
    masks_[token.id] = mask;
    updateSelection();
    return token;
}

void X11RawInput::removeListener(Token token) {
    listeners_.remove(token);
    masks_.erase(token.id);
    updateSelection();
}

void X11RawInput::updateSelection() {
    bool wantsMotion = false;
    for (const auto& [id, mask] : masks_)
        wantsMotion = wantsMotion || (mask & motionMask);
    if (wantsMotion == motionSelected_)
        return;
    motionSelected_ = wantsMotion;
    movedSinceQuery_ = true;
    if (frameGate_.waiting()) {
        // The frame's end selects what is wanted then.
        return;
    }
    selectRawEvents(source_.xcb(), source_.root(), wantsMotion);
}

void X11RawInput::handleEvent(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7f;
    if (type == XCB_CONFIGURE_NOTIFY) {
        const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (configure.window == source_.root())
            rootHeight_ = configure.height;
        return;
    }
    if (type != XCB_GE_GENERIC)
        return;
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.extension != opcode_)
        return;
    switch (generic.event_type) {
        case XCB_INPUT_RAW_KEY_PRESS:
        case XCB_INPUT_RAW_KEY_RELEASE: {
            const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
            const bool pressed = generic.event_type == XCB_INPUT_RAW_KEY_PRESS;
            if (raw.detail > 255)
                return;
            if (pressed)
                handleKeyPress(raw.time);
            if (auto keyEvent = translator_.keyEvent(static_cast<xcb_keycode_t>(raw.detail),
                                                     pressed, raw.time)) {
                deliveringKey_ = true;
                deliver(*keyEvent);
                deliveringKey_ = false;
            }
            return;
        }
        case XCB_INPUT_RAW_MOTION:
            handleRawMotion(reinterpret_cast<const xcb_input_raw_motion_event_t&>(event).time);
            return;
        default:
            return;
    }
}

void X11RawInput::handleRawMotion(xcb_timestamp_t time) {
    motionTime_ = time;
    movedSinceQuery_ = true;
    if (!pendingQuery_)
        sampleAfterFrame();
}

// A sample in this frame was taken: the next waits for the frame's end,
// with raw motion muted until then.
void X11RawInput::sampleAfterFrame() {
    if (frameGate_.waiting())
        return;
    if (frameGate_.admitsNow()) {
        queryPointer();
        return;
    }
    selectRawEvents(source_.xcb(), source_.root(), false);
}

// The pointer may have moved unheard during the frame: its place is asked
// for once, and motion is heard again.
void X11RawInput::endMutedFrame() {
    if (!motionSelected_)
        return;
    selectRawEvents(source_.xcb(), source_.root(), true);
    movedSinceQuery_ = true;
    if (!pendingQuery_)
        queryPointer();
    xcb_flush(source_.xcb());
}

void X11RawInput::handleKeyPress(xcb_timestamp_t time) {
    lastKeyTime_ = time;
    const bool askedInThisChord = queriedAtKey_ && time - *queriedAtKey_ <= chordMilliseconds;
    if (motionSelected_ || pendingQuery_ || askedInThisChord)
        return;
    queryPointer();
    queriedAtKey_ = time;
}

// Whether the place known, or on its way, needs no new query: kept
// current by motion, or asked for by a key of the chord being handed out.
bool X11RawInput::placeIsCurrent() const {
    if (motionSelected_)
        return !frameGate_.waiting() && !movedSinceQuery_;
    return deliveringKey_ && queriedAtKey_ && lastKeyTime_ - *queriedAtKey_ <= chordMilliseconds;
}

void X11RawInput::queryPointer() {
    pendingQuery_ = xcb_query_pointer(source_.xcb(), source_.root()).sequence;
    movedSinceQuery_ = false;
    queriedAtKey_.reset();
    frameGate_.ran();
}

void X11RawInput::takePointerReply(Reply<xcb_query_pointer_reply_t> reply) {
    pendingQuery_.reset();
    if (reply) {
        pointer_ = CGPoint{static_cast<double>(reply->root_x), static_cast<double>(reply->root_y)};
        moveToDeliver_ = motionSelected_;
    }
}

void X11RawInput::collectPointer() {
    if (pendingQuery_) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (!xcb_poll_for_reply(source_.xcb(), *pendingQuery_, &reply, &error))
            return;
        const ErrorReply ignored(error);
        takePointerReply(
            Reply<xcb_query_pointer_reply_t>(static_cast<xcb_query_pointer_reply_t*>(reply)));
    }
    if (!moveToDeliver_)
        return;
    moveToDeliver_ = false;
    if (movedSinceQuery_ && motionSelected_)
        sampleAfterFrame();
    deliver(translator_.mouseMovedEvent(pointer_, rootHeight_, motionTime_));
}

CGPoint X11RawInput::mouseLocation() {
    // The position kept from motion, or asked for as the chord's keys came,
    // is current; only otherwise is there a round trip. The answer to a
    // query sent earlier has usually arrived by now.
    if (!placeIsCurrent())
        movedSinceQuery_ = true;
    while (pendingQuery_ || movedSinceQuery_) {
        if (!pendingQuery_)
            queryPointer();
        takePointerReply(awaitReply(source_.xcb(), xcb_query_pointer_reply,
                                    xcb_query_pointer_cookie_t{*pendingQuery_}));
        source_.dispatchSoon();
    }
    return X11InputEventTranslator::bottomLeft(pointer_, rootHeight_);
}

void X11RawInput::deliver(const Event& event) {
    listeners_.call(event);
}

}  // namespace platform::x11
