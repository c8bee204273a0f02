#include <gtest/gtest.h>

#include <cstdlib>
#include <string_view>
#include <utility>

#include "x11/InputBackendTest.h"

namespace x11test {
namespace {

using InputEventSourceTest = InputBackendTest;

void changeRootName(FakeInput& other, std::string_view name) {
    xcb_change_property(other.connection(), XCB_PROP_MODE_REPLACE, other.root(), XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(name.size()), name.data());
    other.sync();
}

// An idle handler that waits for a reply reads whatever precedes the reply
// off the socket; an event among it must still be handed out, though the
// descriptor will never turn readable for it.
TEST_F(InputEventSourceTest, AnEventReadWhileAnIdleHandlerWaitsForAReplyIsHandedOut) {
    source->selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    int propertyChanges = 0;
    const auto events = source->addEventHandler([&](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
            ++propertyChanges;
    });
    bool changed = false;
    const auto idle = source->addIdleHandler([&] {
        if (std::exchange(changed, true))
            return;
        changeRootName(*input, "changed while we wait");
        std::free(
            xcb_get_input_focus_reply(source->xcb(), xcb_get_input_focus(source->xcb()), nullptr));
    });

    source->dispatchSoon();
    EXPECT_TRUE(waitFor([&] { return propertyChanges == 1; }));
    source->removeEventHandler(events);
    source->removeIdleHandler(idle);
}

}  // namespace
}  // namespace x11test
