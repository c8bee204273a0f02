#pragma once

#include <string>
#include <vector>

#include "platform/sim/SimEventMonitors.h"
#include "recorder/SRRecorderControl.h"
#include "recorder/SRRecorderControlHost.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro::testing {

// A recorder control's view that records what the control asks of it.
class FakeRecorderHost final : public SRRecorderControlHost {
  public:
    bool isFirstResponder() const override { return firstResponder; }
    bool makeFirstResponder() override {
        firstResponder = acceptsFocus;
        return firstResponder;
    }
    void resignFirstResponder() override { firstResponder = false; }
    bool canBecomeKeyView() const override { return keyView; }
    platform::CGSize bounds() const override { return size; }
    void setNeedsDisplay() override { ++displays; }
    void setNeedsLayout() override { ++layouts; }
    void setToolTip(const std::string& tip) override { toolTip = tip; }
    void playAlert() override { ++alerts; }
    void postAccessibilityNotification(SRAccessibilityNotification notification) override {
        notifications.push_back(notification);
    }
    bool presentErrorAsSheet(const SRValidationError& error) override {
        sheets.push_back(error);
        return true;
    }
    SRToolkitAppearance toolkitAppearance() const override { return appearance; }

    bool firstResponder = false;
    bool acceptsFocus = true;
    bool keyView = true;
    platform::CGSize size{160, 22};
    int displays = 0;
    int layouts = 0;
    int alerts = 0;
    std::string toolTip;
    std::vector<SRAccessibilityNotification> notifications;
    std::vector<SRValidationError> sheets;
    SRToolkitAppearance appearance;
};

// A key event in the platform's numbering.
inline platform::Event keyEvent(platform::EventType type, SRKeyCode keyCode,
                                SRModifierFlags flags = 0) {
    platform::Event event;
    event.type = type;
    event.keyCode = keyCode;
    event.modifierFlags = flags;
    return event;
}
inline platform::Event keyDown(SRKeyCode keyCode, SRModifierFlags flags = 0) {
    return keyEvent(platform::EventType::keyDown, keyCode, flags);
}
inline platform::Event flagsChanged(SRKeyCode keyCode, SRModifierFlags flags) {
    return keyEvent(platform::EventType::flagsChanged, keyCode, flags);
}

// The simulated platform with the event monitors, and a control on a fake
// view.
class RecorderControlTest : public ShortcutTest {
  protected:
    platform::Services recorderServices() {
        auto services = this->services();
        services.eventMonitors = &monitors;
        return services;
    }

    platform::sim::SimEventMonitors monitors{loop, [] { return true; }};
    platform::ScopedInstall withMonitors{recorderServices()};
    FakeRecorderHost host;
    std::shared_ptr<SRRecorderControl> control = makeControl();

    std::shared_ptr<SRRecorderControl> makeControl() {
        auto made = std::make_shared<SRRecorderControl>();
        made->setHost(&host);
        return made;
    }
};

}  // namespace lirixkro::testing
