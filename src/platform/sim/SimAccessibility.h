#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/MainLoop.h"
#include "platform/Subscription.h"
#include "platform/sim/SimAccessibilityElement.h"
#include "platform/sim/SimAccessibilityFaults.h"

namespace platform::sim {

class SimWorkspace;

// A window to add to a simulated process.
struct SimWindowSetup {
    struct Button {
        bool present = true;
        bool enabled = true;
    };

    std::optional<std::string> title;  // none: "AXTitle" has no value
    std::string role = "AXWindow";
    std::string subrole = "AXStandardWindow";
    CGPoint position{100, 100};
    CGSize size{800, 600};
    bool minimized = false;
    bool fullScreen = false;
    // A new window comes to the front and, unless minimised, becomes main.
    bool becomesMain = true;
    Button closeButton;
    Button minimizeButton;
    Button zoomButton;

    static SimWindowSetup titled(std::string text) {
        SimWindowSetup setup;
        setup.title = std::move(text);
        return setup;
    }
};

// The accessibility interface of a simulated desktop: an in-memory tree of
// elements per process (the application element, its windows, their
// title-bar buttons), writable attributes and actions with the effects a
// real application shows, notifications delivered on the main loop, and
// faults that tests put on any call.
//
// With a workspace, every application the workspace runs has an
// application element (with no windows until a test adds some), its
// termination ends the process here too, and "AXFrontmost" follows and
// drives the workspace's frontmost application.
class SimAccessibility final : public Accessibility {
  public:
    explicit SimAccessibility(MainLoop& loop, SimWorkspace* workspace = nullptr);
    ~SimAccessibility() override;
    SimAccessibility(const SimAccessibility&) = delete;
    SimAccessibility& operator=(const SimAccessibility&) = delete;

    // The interface.
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

    // Scripting the desktop. Changes send their notifications as a real
    // application does; delivery is on the main loop.
    AXUIElementRef addProcess(pid_t pid, std::string name = {});
    // Every element of the process answers invalidUIElement from now on.
    void endProcess(pid_t pid);
    AXUIElementRef addWindow(pid_t pid, SimWindowSetup setup = {});
    // The window closes: "AXUIElementDestroyed".
    void removeWindow(const AXUIElementRef& window);
    void setTitle(const AXUIElementRef& window, std::optional<std::string> title);
    void moveWindow(const AXUIElementRef& window, CGPoint position);
    void resizeWindow(const AXUIElementRef& window, CGSize size);
    void setMinimized(const AXUIElementRef& window, bool minimized);
    void setFullScreen(const AXUIElementRef& window, bool fullScreen);
    // Front and main: "AXMainWindowChanged" when the main window changes.
    void raiseWindow(const AXUIElementRef& window);
    void setFrontmost(pid_t pid, bool frontmost);
    // Sends any notification from an element.
    void postNotification(const AXUIElementRef& element, const std::string& notification,
                          CFValue::Dictionary info = {});

    // A plain child element, and raw attributes and actions of any element:
    // a value of nothing is an attribute that is there without a value.
    AXUIElementRef addElement(const AXUIElementRef& parent, const std::string& role);
    void setAttribute(const AXUIElementRef& element, const std::string& attribute,
                      std::optional<CFValue> value, bool settable = false);
    void removeAttribute(const AXUIElementRef& element, const std::string& attribute);
    void addAction(const AXUIElementRef& element, const std::string& action,
                   std::string description = {});
    using ParameterizedAttribute = std::function<std::optional<CFValue>(const CFValue& parameter)>;
    void setParameterizedAttribute(const AXUIElementRef& element, const std::string& attribute,
                                   ParameterizedAttribute answer);
    // Notifications outside the platform's words ("AX...") are refused
    // anyway; this refuses one of them too.
    void refuseNotification(const std::string& notification);

    // Faults: a null element or no name matches any; times < 0 means for good.
    void injectFault(SimAXCall call, SimAXFault fault, AXUIElementRef element = nullptr,
                     std::optional<std::string> name = std::nullopt, int times = -1);
    void clearFaults() { faults_.clear(); }
    void setProcessTrusted(bool trusted) { trusted_ = trusted; }

    // Reading the desktop back.
    AXUIElementRef applicationElement(pid_t pid) const;
    std::vector<AXUIElementRef> windows(pid_t pid) const;
    AXUIElementRef mainWindow(pid_t pid) const;
    // "AXCloseButton", "AXMinimizeButton" or "AXZoomButton" of a window.
    AXUIElementRef button(const AXUIElementRef& window, const std::string& attribute) const;
    bool exists(const AXUIElementRef& element) const;
    // The stored value of an attribute, bypassing faults.
    std::optional<CFValue> value(const AXUIElementRef& element, const std::string& attribute) const;
    std::optional<float> messagingTimeoutOf(const AXUIElementRef& element) const;
    const std::vector<std::pair<AXUIElementRef, std::string>>& performedActions() const {
        return performed_;
    }
    // Calls that reached an element (every call but the trust test and the
    // run loop ones).
    std::size_t callCount() const { return callCount_; }
    std::size_t trustChecks() const { return trustChecks_; }
    std::optional<bool> lastTrustPrompt() const { return lastTrustPrompt_; }
    std::size_t liveObserverCount() const;

  private:
    struct Element {
        AXUIElementRef handle;
        std::optional<SimAXElementKey> parent;
        std::map<std::string, std::optional<CFValue>> attributes;
        std::set<std::string> settable;
        std::vector<std::pair<std::string, std::string>> actions;
        std::map<std::string, ParameterizedAttribute> parameterized;
        std::optional<float> messagingTimeout;
    };
    struct Process {
        std::string name;
        std::vector<std::uint64_t> windows;  // front to back
        std::optional<std::uint64_t> mainWindow;
        bool frontmost = false;
    };
    class Observer;
    struct Answer {
        AXErrorCode code = axError::success;
        std::optional<CFValue> value;
    };

    // Element lookup; null for an element that isn't there (any more).
    Element* find(const AXUIElementRef& element);
    const Element* find(const AXUIElementRef& element) const;
    Element* find(const SimAXElementKey& key);
    Element& require(const AXUIElementRef& element, const char* operation);
    Process* process(pid_t pid);
    Element& makeElement(SimAXElementKey key, std::optional<SimAXElementKey> parent);
    // Counts a call and gives the answer of a fault put on it, if any.
    std::optional<Answer> intercept(SimAXCall call, const AXUIElementRef& element,
                                    const std::string& name = {});
    Answer readAttribute(const AXUIElementRef& element, const std::string& attribute);
    // Runs one call: a fault put on it answers through `deliver`; otherwise
    // `body` answers for the element, and an element that isn't there (any
    // more) is invalid.
    template <typename Deliver, typename Body>
    AXErrorCode answer(SimAXCall call, const AXUIElementRef& element, const std::string& name,
                       Deliver deliver, Body body);

    // Desktop behaviour.
    static bool flag(const Element& element, const std::string& attribute);
    static std::optional<CGRect> frameOf(const Element& element);
    bool isWindow(const SimAXElementKey& key) const;
    AXUIElementRef addButton(Element& window, const std::string& attribute,
                             const std::string& subrole, SimWindowSetup::Button setup);
    AXErrorCode write(Element& element, const std::string& attribute, const CFValue& value);
    bool writeWindowState(const AXUIElementRef& window, const std::string& attribute,
                          const CFValue& value);
    AXErrorCode act(Element& element, const std::string& action);
    void pressButton(Element& button);
    void chooseMainWindow(pid_t pid, std::optional<std::uint64_t> window);
    void chooseNextMainWindow(pid_t pid);
    void syncProcess(pid_t pid);
    void setFrame(Element& window, CGPoint position, CGSize size);
    void frontmostChanged(pid_t frontmostPid);

    // Notifications.
    void notify(const SimAXElementKey& source, const std::string& notification,
                CFValue::Dictionary info = {});
    std::shared_ptr<Observer> observerOf(const AXObserverRef& observer) const;
    // A notification registration's observer and element, or the error that
    // stops it: a scripted fault, an unknown observer or a missing element.
    struct Registration {
        AXErrorCode code = axError::success;
        std::shared_ptr<Observer> observer;
        SimAXElementKey key;
    };
    Registration registration(SimAXCall call, const AXObserverRef& observer,
                              const AXUIElementRef& element, const std::string& notification);
    AXErrorCode makeObserver(pid_t pid, AXObserverCallback callback,
                             AXObserverCallbackWithInfo callbackWithInfo, AXObserverRef& out);

    MainLoop& loop_;
    SimWorkspace* workspace_;
    std::map<SimAXElementKey, Element> elements_;
    std::map<pid_t, Process> processes_;
    // Ended processes don't come back from the workspace's list.
    std::set<pid_t> ended_;
    std::uint64_t lastElementId_ = 0;
    SimAXFaults faults_;
    bool trusted_ = true;
    std::size_t callCount_ = 0;
    std::size_t trustChecks_ = 0;
    std::optional<bool> lastTrustPrompt_;
    std::vector<std::pair<AXUIElementRef, std::string>> performed_;
    std::vector<std::weak_ptr<Observer>> observers_;
    std::set<std::string> refusedNotifications_;
    Token terminationObserver_;
    Subscription frontmostSubscription_;
};

}  // namespace platform::sim
