#include "RecorderDesktop.h"

#include <xcb/xtest.h>

#include <cstdlib>

#include "platform/x11/X11Connection.h"
#include "platform/x11/XkbProtocol.h"
#include "views/QtTestSupport.h"

namespace recordertest {

void RecorderDesktop::SetUp() {
    ASSERT_FALSE(suiteDisplay().empty()) << "Xvfb did not start";
    auto connection = platform::x11::X11Connection::open(suiteDisplay().c_str());
    ASSERT_TRUE(connection);
    source = std::make_unique<platform::x11::X11InputEventSource>(std::move(connection), loop);
    layouts = platform::x11::X11KeyboardLayouts::create(*source);
    ASSERT_TRUE(layouts);
    hotKeys = std::make_unique<platform::x11::X11HotKeys>(*source);
    platform::Services services;
    services.mainLoop = &loop;
    services.keyboardLayouts = layouts.get();
    services.hotKeys = hotKeys.get();
    install = std::make_unique<platform::ScopedInstall>(services);
    input = std::make_unique<x11test::FakeInput>(suiteDisplay());

    bellWatcher_ = xcb_connect(suiteDisplay().c_str(), nullptr);
    const auto* xkb = xcb_get_extension_data(bellWatcher_, &xcb_xkb_id);
    ASSERT_TRUE(xkb && xkb->present);
    xkbEventBase_ = xkb->first_event;
    std::free(xcb_xkb_use_extension_reply(bellWatcher_, xcb_xkb_use_extension(bellWatcher_, 1, 0),
                                          nullptr));
    xcb_xkb_select_events(bellWatcher_, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_BELL_NOTIFY, 0,
                          XCB_XKB_EVENT_TYPE_BELL_NOTIFY, 0, 0, nullptr);
    xcb_flush(bellWatcher_);
}

void RecorderDesktop::TearDown() {
    if (bellWatcher_)
        xcb_disconnect(bellWatcher_);
    install.reset();
}

bool RecorderDesktop::waitFor(const std::function<bool()>& condition) {
    return viewtest::runQtUntil(condition, 5000);
}

void RecorderDesktop::click(int rootX, int rootY) {
    auto* c = input->connection();
    xcb_test_fake_input(c, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, input->root(),
                        static_cast<std::int16_t>(rootX), static_cast<std::int16_t>(rootY), 0);
    xcb_test_fake_input(c, XCB_BUTTON_PRESS, 1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_test_fake_input(c, XCB_BUTTON_RELEASE, 1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    input->sync();
}

void RecorderDesktop::pressChord(std::initializer_list<xcb_keycode_t> modifiers,
                                 xcb_keycode_t key) {
    for (auto modifier : modifiers)
        input->press(modifier);
    if (key)
        input->tap(key);
    for (auto it = std::rbegin(modifiers); it != std::rend(modifiers); ++it)
        input->release(*it);
    input->sync();
}

int RecorderDesktop::bellsRung() {
    xcb_flush(bellWatcher_);
    std::free(xcb_get_input_focus_reply(bellWatcher_, xcb_get_input_focus(bellWatcher_), nullptr));
    while (xcb_generic_event_t* event = xcb_poll_for_event(bellWatcher_)) {
        const auto* xkb = reinterpret_cast<const xcb_xkb_bell_notify_event_t*>(event);
        if ((event->response_type & 0x7f) == xkbEventBase_ && xkb->xkbType == XCB_XKB_BELL_NOTIFY) {
            ++bells_;
        }
        std::free(event);
    }
    return bells_;
}

}  // namespace recordertest
