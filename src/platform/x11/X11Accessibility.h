#pragma once

#include <memory>

#include "platform/Accessibility.h"
#include "platform/IntervalGate.h"
#include "platform/LifetimeGuard.h"
#include "platform/MainLoop.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11ElementAttributes.h"
#include "platform/x11/X11ElementCommands.h"
#include "platform/x11/X11ObserverHub.h"
#include "platform/x11/X11WindowMirror.h"

namespace platform::x11 {

// The accessibility interface over an EWMH window manager. Applications are
// local processes owning managed windows; windows are the managed clients.
// Reads answer from a mirror of the window manager's state that X events
// keep current on the main loop; writes and actions become requests to the
// window manager. A vanished window answers invalidUIElement and X errors
// about it are taken off the connection quietly.
class X11Accessibility final : public Accessibility {
  public:
    // Nothing when the display can't be opened.
    static std::unique_ptr<X11Accessibility> open(MainLoop& loop,
                                                  const char* displayName = nullptr);
    // Takes a connection of its own: its events are for this object alone.
    X11Accessibility(MainLoop& loop, std::unique_ptr<X11Connection> connection);
    ~X11Accessibility() override;
    X11Accessibility(const X11Accessibility&) = delete;
    X11Accessibility& operator=(const X11Accessibility&) = delete;

    AXUIElementRef createApplication(pid_t pid) override;
    AXUIElementRef createSystemWide() override;

    AXErrorCode copyAttributeNames(const AXUIElementRef& element,
                                   std::optional<CFValue>& names) override;
    AXErrorCode copyAttributeValue(const AXUIElementRef& element, const std::string& attribute,
                                   std::optional<CFValue>& value) override;
    AXErrorCode copyAttributeValues(const AXUIElementRef& element, const std::string& attribute,
                                    std::int64_t index, std::int64_t maxValues,
                                    std::optional<CFValue>& values) override;
    AXErrorCode getAttributeValueCount(const AXUIElementRef& element, const std::string& attribute,
                                       std::int64_t& count) override;
    AXErrorCode isAttributeSettable(const AXUIElementRef& element, const std::string& attribute,
                                    bool& settable) override;
    AXErrorCode setAttributeValue(const AXUIElementRef& element, const std::string& attribute,
                                  const CFValue& value) override;
    AXErrorCode copyMultipleAttributeValues(const AXUIElementRef& element,
                                            const std::vector<std::string>& attributes,
                                            std::uint32_t options,
                                            std::optional<CFValue>& values) override;
    AXErrorCode copyParameterizedAttributeNames(const AXUIElementRef& element,
                                                std::optional<CFValue>& names) override;
    AXErrorCode copyParameterizedAttributeValue(const AXUIElementRef& element,
                                                const std::string& attribute,
                                                const CFValue& parameter,
                                                std::optional<CFValue>& value) override;
    AXErrorCode copyActionNames(const AXUIElementRef& element,
                                std::optional<CFValue>& names) override;
    AXErrorCode copyActionDescription(const AXUIElementRef& element, const std::string& action,
                                      std::optional<CFValue>& description) override;
    AXErrorCode performAction(const AXUIElementRef& element, const std::string& action) override;
    AXErrorCode getPid(const AXUIElementRef& element, pid_t& pid) override;
    AXErrorCode setMessagingTimeout(const AXUIElementRef& element, float seconds) override;
    AXErrorCode copyElementAtPosition(const AXUIElementRef& application, float x, float y,
                                      AXUIElementRef& element) override;

    bool isProcessTrustedWithOptions(const CFValue::Dictionary& options) override;

    AXErrorCode observerCreate(pid_t pid, AXObserverCallback callback,
                               AXObserverRef& observer) override;
    AXErrorCode observerCreateWithInfoCallback(pid_t pid, AXObserverCallbackWithInfo callback,
                                               AXObserverRef& observer) override;
    AXErrorCode observerAddNotification(const AXObserverRef& observer,
                                        const AXUIElementRef& element,
                                        const std::string& notification, void* refcon) override;
    AXErrorCode observerRemoveNotification(const AXObserverRef& observer,
                                           const AXUIElementRef& element,
                                           const std::string& notification) override;
    void runLoopAddSource(const AXObserverRef& observer) override;
    void runLoopRemoveSource(const AXObserverRef& observer) override;

    // Takes in the events the server has sent, a bounded number at a time.
    // The main loop calls it when the connection has data; tests and
    // benchmarks may call it directly.
    void processEvents();
    bool isConnected() const;

    // The window state the reads answer from, for the other parts of the
    // backend that follow the managed windows.
    const X11WindowMirror& windowMirror() const { return mirror_; }
    // Also tells the listener of the mirror's changes, after the observers,
    // until it is removed.
    Token addWindowListener(X11WindowMirrorListener& listener) { return listeners_.add(listener); }
    void removeWindowListener(Token listener) { listeners_.remove(listener); }
    // Where several processes are one application, the application element
    // of the process standing for it holds the windows of all of them.
    void setApplicationProcesses(X11ApplicationProcesses* applications) {
        mirror_.setApplicationProcesses(applications);
    }
    void regroupWindowsOf(pid_t applicationPid) { mirror_.regroup(applicationPid); }

  private:
    // The element behind the handle, when it is ours and still stands for
    // something, with the mirror brought up to date first; otherwise the
    // code to answer with.
    AXErrorCode liveElement(const AXUIElementRef& element, const X11ElementKey*& key);
    AXErrorCode readArray(const AXUIElementRef& element, const std::string& attribute,
                          const CFValue::Array*& array, std::optional<CFValue>& holder);
    // Settles now what the gate holds back, so that a read answers with
    // what the server said last.
    void catchUp();
    // Listens to the connection again and settles what waited.
    void resume();
    // Takes in a bounded number of events, settling the mirror now or when
    // the gate lets it.
    void takeEvents(bool settleNow);
    void takeQueuedEvents();
    // The next event, from the socket or only from those read already;
    // with none, the mirror settles (now or as the gate lets it) and an
    // event read meanwhile comes back. Null when there is none.
    Reply<xcb_generic_event_t> nextEvent(bool readSocket, bool settleNow);
    // Settles the mirror if anything is unsettled: now, or at the gate's
    // run, not listening to the connection meanwhile. False when put off.
    bool settleMirror(bool now);
    void watch();
    void stopWatching();
    void stopWatchingIfDisconnected();
    void handle(const xcb_generic_event_t& event);
    // The check window of a window manager that answers, asked of the
    // server; none when none answers.
    xcb_window_t askForAnsweringWindowManager();

    MainLoop& loop_;
    std::unique_ptr<X11Connection> connection_;
    X11ElementAttributes attributes_;
    X11ObserverHub hub_;
    X11WindowMirrorListeners listeners_{hub_};
    X11WindowMirror mirror_;
    X11ElementCommands commands_;
    // A window manager rewrites the root's lists several times for each
    // window that comes, and in a flood of windows without pause: reading
    // them at most once per interval lets one read serve many changes. The
    // first change after a quiet spell is read at once.
    static constexpr double settleInterval = 0.1;
    IntervalGate settleGate_{loop_, settleInterval, [this] { resume(); }};
    Token watch_;
    // The check window of the window manager that last answered.
    xcb_window_t answeringCheck_ = XCB_NONE;
    // Tasks posted to the loop may run after the backend is gone.
    LifetimeGuard lifetime_;
};

}  // namespace platform::x11
