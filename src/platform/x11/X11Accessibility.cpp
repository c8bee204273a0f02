#include "platform/x11/X11Accessibility.h"

#include <algorithm>
#include <utility>

namespace platform::x11 {

namespace {
// The option of copyMultipleAttributeValues that stops at the first failure.
constexpr std::uint32_t stopOnError = 0x1;
// How many events one turn of the main loop takes in at most.
constexpr std::size_t maxEventsPerTurn = 256;

CFValue nameArray(std::vector<std::string> names) {
    CFValue::Array array;
    for (auto& name : names)
        array.emplace_back(std::move(name));
    return array;
}
}  // namespace

std::unique_ptr<X11Accessibility> X11Accessibility::open(MainLoop& loop, const char* displayName) {
    auto connection = X11Connection::open(displayName);
    if (!connection)
        return nullptr;
    return std::make_unique<X11Accessibility>(loop, std::move(connection));
}

X11Accessibility::X11Accessibility(MainLoop& loop, std::unique_ptr<X11Connection> connection)
    : loop_(loop),
      connection_(std::move(connection)),
      attributes_(*connection_, mirror_),
      hub_(loop, attributes_),
      mirror_(*connection_, listeners_),
      commands_(*connection_, mirror_) {
    mirror_.load();
    xcb_flush(connection_->connection());
    watch();
    // Loading may have taken events in already; the descriptor won't tell.
    takeQueuedEvents();
}

X11Accessibility::~X11Accessibility() {
    stopWatching();
}

bool X11Accessibility::isConnected() const {
    return !xcb_connection_has_error(connection_->connection());
}

void X11Accessibility::processEvents() {
    takeEvents(false);
}

void X11Accessibility::catchUp() {
    if (!settleGate_.waiting())
        return;
    settleGate_.cancel();
    resume();
}

void X11Accessibility::resume() {
    watch();
    takeEvents(true);
}

void X11Accessibility::takeEvents(bool settleNow) {
    for (std::size_t handled = 0; handled < maxEventsPerTurn; ++handled) {
        const auto event = nextEvent(true, settleNow);
        if (!event) {
            stopWatchingIfDisconnected();
            return;
        }
        handle(*event);
    }
    // A flood of events takes turns with the rest of the loop's work.
    if (settleMirror(settleNow))
        loop_.post(lifetime_.guard([this] { processEvents(); }));
    stopWatchingIfDisconnected();
}

void X11Accessibility::takeQueuedEvents() {
    while (const auto event = nextEvent(false, true))
        handle(*event);
}

// Waiting for the settle's replies may read further events off the socket,
// which then won't turn readable for them: the first of them comes back.
Reply<xcb_generic_event_t> X11Accessibility::nextEvent(bool readSocket, bool settleNow) {
    auto* c = connection_->connection();
    Reply<xcb_generic_event_t> event(readSocket ? xcb_poll_for_event(c)
                                                : xcb_poll_for_queued_event(c));
    if (!event && settleMirror(settleNow))
        event.reset(xcb_poll_for_queued_event(c));
    return event;
}

bool X11Accessibility::settleMirror(bool now) {
    if (!mirror_.unsettled())
        return true;
    if (!now && !settleGate_.admitsNow()) {
        // Events that come meanwhile wait in the socket for the gate's run.
        stopWatching();
        return false;
    }
    settleGate_.ran();
    mirror_.settle();
    return true;
}

void X11Accessibility::watch() {
    if (!watch_ && isConnected())
        watch_ =
            loop_.watchFileDescriptor(connection_->fileDescriptor(), [this] { processEvents(); });
}

void X11Accessibility::stopWatching() {
    if (watch_)
        loop_.unwatch(std::exchange(watch_, {}));
}

// A dead connection stays readable forever; stop listening to it.
void X11Accessibility::stopWatchingIfDisconnected() {
    if (!isConnected())
        stopWatching();
}

// Errors come here too, unread: they answer requests about windows that
// had gone, which the mirror learns of from their events.
void X11Accessibility::handle(const xcb_generic_event_t& event) {
    if (event.response_type != 0)
        mirror_.handleEvent(event);
}

AXErrorCode X11Accessibility::liveElement(const AXUIElementRef& element,
                                          const X11ElementKey*& key) {
    catchUp();
    const auto* x11Element = X11Element::from(element);
    if (!x11Element)
        return axError::illegalArgument;
    if (!isConnected())
        return axError::cannotComplete;
    if (!attributes_.isAlive(x11Element->key()))
        return axError::invalidUIElement;
    key = &x11Element->key();
    return axError::success;
}

AXUIElementRef X11Accessibility::createApplication(pid_t pid) {
    return attributes_.applicationElement(pid);
}

AXUIElementRef X11Accessibility::createSystemWide() {
    return X11Element::make(X11ElementKey::forSystemWide());
}

AXErrorCode X11Accessibility::copyAttributeNames(const AXUIElementRef& element,
                                                 std::optional<CFValue>& names) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    names = nameArray(attributes_.names(key->kind));
    return axError::success;
}

AXErrorCode X11Accessibility::copyAttributeValue(const AXUIElementRef& element,
                                                 const std::string& attribute,
                                                 std::optional<CFValue>& value) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    return attributes_.read(*key, attribute, value);
}

AXErrorCode X11Accessibility::readArray(const AXUIElementRef& element, const std::string& attribute,
                                        const CFValue::Array*& array,
                                        std::optional<CFValue>& holder) {
    if (auto code = copyAttributeValue(element, attribute, holder))
        return code;
    array = holder->get<CFValue::Array>();
    return array ? axError::success : axError::illegalArgument;
}

AXErrorCode X11Accessibility::copyAttributeValues(const AXUIElementRef& element,
                                                  const std::string& attribute, std::int64_t index,
                                                  std::int64_t maxValues,
                                                  std::optional<CFValue>& values) {
    if (index < 0 || maxValues < 0)
        return axError::illegalArgument;
    const CFValue::Array* array = nullptr;
    std::optional<CFValue> holder;
    if (auto code = readArray(element, attribute, array, holder))
        return code;
    const auto size = static_cast<std::int64_t>(array->size());
    const auto first = std::min(index, size);
    const auto last = std::min(size, first + maxValues);
    values = CFValue(CFValue::Array(array->begin() + first, array->begin() + last));
    return axError::success;
}

AXErrorCode X11Accessibility::getAttributeValueCount(const AXUIElementRef& element,
                                                     const std::string& attribute,
                                                     std::int64_t& count) {
    const CFValue::Array* array = nullptr;
    std::optional<CFValue> holder;
    if (auto code = readArray(element, attribute, array, holder))
        return code;
    count = static_cast<std::int64_t>(array->size());
    return axError::success;
}

AXErrorCode X11Accessibility::isAttributeSettable(const AXUIElementRef& element,
                                                  const std::string& attribute, bool& settable) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    const auto names = attributes_.names(key->kind);
    if (std::find(names.begin(), names.end(), attribute) == names.end()) {
        return axError::attributeUnsupported;
    }
    settable = attributes_.isSettable(key->kind, attribute);
    return axError::success;
}

AXErrorCode X11Accessibility::setAttributeValue(const AXUIElementRef& element,
                                                const std::string& attribute,
                                                const CFValue& value) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    if (!attributes_.isSettable(key->kind, attribute))
        return axError::attributeUnsupported;
    const auto code = commands_.set(*key, attribute, value);
    takeQueuedEvents();
    return code;
}

AXErrorCode X11Accessibility::copyMultipleAttributeValues(
    const AXUIElementRef& element, const std::vector<std::string>& attributes,
    std::uint32_t options, std::optional<CFValue>& values) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    CFValue::Array list;
    for (const auto& attribute : attributes) {
        std::optional<CFValue> value;
        const auto code = attributes_.read(*key, attribute, value);
        if (code && (options & stopOnError))
            return code;
        list.push_back(code ? CFValue(AXValue::error(code)) : std::move(*value));
    }
    values = CFValue(std::move(list));
    return axError::success;
}

AXErrorCode X11Accessibility::copyParameterizedAttributeNames(const AXUIElementRef& element,
                                                              std::optional<CFValue>& names) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    names = CFValue(CFValue::Array{});
    return axError::success;
}

AXErrorCode X11Accessibility::copyParameterizedAttributeValue(const AXUIElementRef& element,
                                                              const std::string&, const CFValue&,
                                                              std::optional<CFValue>&) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    return axError::parameterizedAttributeUnsupported;
}

AXErrorCode X11Accessibility::copyActionNames(const AXUIElementRef& element,
                                              std::optional<CFValue>& names) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    names = nameArray(commands_.actionNames(key->kind));
    return axError::success;
}

AXErrorCode X11Accessibility::copyActionDescription(const AXUIElementRef& element,
                                                    const std::string& action,
                                                    std::optional<CFValue>& description) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    return commands_.describe(key->kind, action, description);
}

AXErrorCode X11Accessibility::performAction(const AXUIElementRef& element,
                                            const std::string& action) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    const auto code = commands_.perform(*key, action);
    takeQueuedEvents();
    return code;
}

AXErrorCode X11Accessibility::getPid(const AXUIElementRef& element, pid_t& pid) {
    const auto* x11Element = X11Element::from(element);
    if (!x11Element || x11Element->key().kind == X11ElementKind::systemWide) {
        return axError::illegalArgument;
    }
    if (x11Element->key().kind == X11ElementKind::application) {
        pid = x11Element->key().pid;
        return axError::success;
    }
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(element, key))
        return code;
    pid = attributes_.pidOf(*key);
    return axError::success;
}

AXErrorCode X11Accessibility::setMessagingTimeout(const AXUIElementRef& element, float seconds) {
    // Reads never wait on another process here, so there is nothing to time out.
    if (!X11Element::from(element) || seconds < 0)
        return axError::illegalArgument;
    return axError::success;
}

AXErrorCode X11Accessibility::copyElementAtPosition(const AXUIElementRef& application, float x,
                                                    float y, AXUIElementRef& element) {
    const X11ElementKey* key = nullptr;
    if (auto code = liveElement(application, key))
        return code;
    if (key->kind != X11ElementKind::application && key->kind != X11ElementKind::systemWide) {
        return axError::illegalArgument;
    }
    const auto window = mirror_.windowAt(x, mirror_.screenHeight() - y);
    if (!window)
        return axError::noValue;
    if (key->kind == X11ElementKind::application && mirror_.window(*window)->pid != key->pid) {
        return axError::noValue;
    }
    element = attributes_.windowElement(*window);
    return axError::success;
}

// Nothing to grant on X11, and so no prompt to show: what matters is a
// window manager that publishes the state we read and honours the requests
// we send. One answers when the root's _NET_SUPPORTING_WM_CHECK names a
// live window that carries _NET_WM_NAME. The server is asked until it
// answers; from then on the window mirror, which follows the check window
// by its events, tells whether that window manager is still there, so that
// the list's every refresh doesn't wait for the server.
bool X11Accessibility::isProcessTrustedWithOptions(const CFValue::Dictionary&) {
    if (!isConnected())
        return false;
    if (answeringCheck_ != XCB_NONE && mirror_.windowManagerCheck() == answeringCheck_)
        return true;
    answeringCheck_ = askForAnsweringWindowManager();
    return answeringCheck_ != XCB_NONE;
}

xcb_window_t X11Accessibility::askForAnsweringWindowManager() {
    auto& ewmh = connection_->ewmh();
    xcb_window_t check = XCB_NONE;
    bool answers =
        xcb_ewmh_get_supporting_wm_check_reply(
            &ewmh, xcb_ewmh_get_supporting_wm_check(&ewmh, connection_->root()), &check, nullptr) &&
        check != XCB_NONE;
    if (answers) {
        xcb_ewmh_get_utf8_strings_reply_t name{};
        answers =
            xcb_ewmh_get_wm_name_reply(&ewmh, xcb_ewmh_get_wm_name(&ewmh, check), &name, nullptr);
        if (answers)
            xcb_ewmh_get_utf8_strings_reply_wipe(&name);
    }
    // Waiting for the replies may have read events off the socket, which
    // then won't turn readable for them.
    loop_.post(lifetime_.guard([this] { processEvents(); }));
    return answers ? check : XCB_NONE;
}

AXErrorCode X11Accessibility::observerCreate(pid_t pid, AXObserverCallback callback,
                                             AXObserverRef& observer) {
    if (!callback)
        return axError::illegalArgument;
    return hub_.create(pid, callback, nullptr, observer);
}

AXErrorCode X11Accessibility::observerCreateWithInfoCallback(pid_t pid,
                                                             AXObserverCallbackWithInfo callback,
                                                             AXObserverRef& observer) {
    if (!callback)
        return axError::illegalArgument;
    return hub_.create(pid, nullptr, callback, observer);
}

AXErrorCode X11Accessibility::observerAddNotification(const AXObserverRef& observer,
                                                      const AXUIElementRef& element,
                                                      const std::string& notification,
                                                      void* refcon) {
    return hub_.add(observer, element, notification, refcon);
}

AXErrorCode X11Accessibility::observerRemoveNotification(const AXObserverRef& observer,
                                                         const AXUIElementRef& element,
                                                         const std::string& notification) {
    return hub_.remove(observer, element, notification);
}

void X11Accessibility::runLoopAddSource(const AXObserverRef& observer) {
    hub_.setOnMainLoop(observer, true);
}

void X11Accessibility::runLoopRemoveSource(const AXObserverRef& observer) {
    hub_.setOnMainLoop(observer, false);
}

}  // namespace platform::x11
