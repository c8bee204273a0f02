#include <gtest/gtest.h>

#include "platform/x11/X11KeyboardLayouts.h"
#include "platform/x11/XkbProtocol.h"
#include "x11/InputBackendTest.h"

namespace x11test {
namespace {

using platform::InputSource;
namespace keycode = platform::keycode;

std::string identifierOf(const std::shared_ptr<InputSource>& source) {
    return source ? source->identifier().value_or("(none)") : "(null)";
}

std::string textOf(const std::shared_ptr<InputSource>& source, platform::KeyCode key) {
    return source ? source->translate(key, 0).text : "(null)";
}

class X11KeyboardLayoutsTest : public InputBackendTest {
  protected:
    std::string currentIdentifier() {
        return identifierOf(layouts->copyCurrentKeyboardLayoutInputSource());
    }
    bool waitForCurrent(const std::string& identifier) {
        return waitFor([&] { return currentIdentifier() == identifier; });
    }
};

TEST_F(X11KeyboardLayoutsTest, FollowsTheServersLayoutAndTellsObservers) {
    int changes = 0;
    platform::Subscription subscription = layouts->observeLayoutChanges([&] { ++changes; });
    auto us = layouts->copyCurrentKeyboardLayoutInputSource();
    EXPECT_EQ(identifierOf(us), "xkb:us");
    EXPECT_EQ(textOf(us, keycode::y), "y");

    ASSERT_TRUE(display.setLayouts("de"));
    ASSERT_TRUE(waitForCurrent("xkb:de"));
    auto german = layouts->copyCurrentKeyboardLayoutInputSource();
    EXPECT_EQ(textOf(german, keycode::y), "z");
    EXPECT_GE(changes, 1);
    // A source handed out before keeps translating as its layout does.
    EXPECT_EQ(textOf(us, keycode::y), "y");
    EXPECT_EQ(identifierOf(layouts->copyCurrentASCIICapableKeyboardLayoutInputSource()), "xkb:de");

    const int changesBefore = changes;
    subscription.cancel();
    ASSERT_TRUE(display.setLayouts("us"));
    ASSERT_TRUE(waitForCurrent("xkb:us"));
    EXPECT_EQ(textOf(layouts->copyCurrentKeyboardLayoutInputSource(), keycode::y), "y");
    EXPECT_EQ(changes, changesBefore);
}

TEST_F(X11KeyboardLayoutsTest, SwitchingGroupsChangesTheCurrentSourceAndTheASCIIOneStaysLatin) {
    ASSERT_TRUE(display.setLayouts("ru,us"));
    ASSERT_TRUE(waitForCurrent("xkb:ru"));
    EXPECT_EQ(textOf(layouts->copyCurrentKeyboardLayoutInputSource(), keycode::a), "ф");
    auto ascii = layouts->copyCurrentASCIICapableKeyboardLayoutInputSource();
    EXPECT_EQ(identifierOf(ascii), "xkb:us");
    EXPECT_EQ(textOf(ascii, keycode::a), "a");

    // Lock the second group, as a layout switcher does.
    int changes = 0;
    platform::Subscription subscription = layouts->observeLayoutChanges([&] { ++changes; });
    xcb_connection_t* other = input->connection();
    xcb_discard_reply(other, xcb_xkb_use_extension(other, 1, 0).sequence);
    xcb_xkb_latch_lock_state(other, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, 1, 0, 0, 0);
    input->sync();
    ASSERT_TRUE(waitForCurrent("xkb:us"));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(textOf(layouts->copyCurrentKeyboardLayoutInputSource(), keycode::a), "a");

    // With no Latin group at all, a built-in US layout stands in.
    ASSERT_TRUE(display.setLayouts("ru"));
    ASSERT_TRUE(waitForCurrent("xkb:ru"));
    ascii = layouts->copyCurrentASCIICapableKeyboardLayoutInputSource();
    EXPECT_EQ(identifierOf(ascii), "xkb:us");
    EXPECT_EQ(textOf(ascii, keycode::y), "y");
}

}  // namespace
}  // namespace x11test
