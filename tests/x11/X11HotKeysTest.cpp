#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "platform/x11/X11HotKeys.h"
#include "x11/InputBackendTest.h"

namespace x11test {
namespace {

using platform::ShortcutAvailability;
using platform::x11::X11HotKeys;
namespace carbon = platform::carbonModifier;

constexpr platform::KeyCode kKey = 40, jKey = 38;
constexpr xcb_keycode_t controlKey = 37, altKey = 64, jXKey = 44, capsKey = 66;
constexpr std::uint32_t controlOption = carbon::control | carbon::option;

class X11HotKeysTest : public InputBackendTest {
  protected:
    void SetUp() override {
        InputBackendTest::SetUp();
        hotKeys = std::make_unique<X11HotKeys>(*source);
    }

    // Another client takes Control-Option-K, as a window manager takes its
    // key bindings.
    void letAnotherClientGrabControlOptionK() {
        other = xcb_connect(display.name().c_str(), nullptr);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
        ASSERT_FALSE(xcb_request_check(
            other, xcb_grab_key_checked(other, 1, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, 45,
                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    }

    void TearDown() override {
        if (other)
            xcb_disconnect(other);
        InputBackendTest::TearDown();
    }

    std::unique_ptr<X11HotKeys> hotKeys;
    xcb_connection_t* other = nullptr;
};

TEST_F(X11HotKeysTest, AKeyAnotherClientHoldsIsTakenAndAFreeOneIsNot) {
    letAnotherClientGrabControlOptionK();
    EXPECT_EQ(hotKeys->isShortcutTaken(kKey, controlOption), ShortcutAvailability::taken);
    EXPECT_EQ(hotKeys->isShortcutTaken(kKey, carbon::control), ShortcutAvailability::free);
    EXPECT_EQ(hotKeys->isShortcutTaken(jKey, controlOption), ShortcutAvailability::free);
    // Asking took nothing away: the free key can still be grabbed by others.
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    EXPECT_FALSE(xcb_request_check(
        other, xcb_grab_key_checked(other, 1, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, 44,
                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    // Keys the server can't grab at all can't be read.
    EXPECT_EQ(hotKeys->isShortcutTaken(platform::keycode::none, 0),
              ShortcutAvailability::cannotRead);
    EXPECT_EQ(hotKeys->isShortcutTaken(kKey, carbon::function), ShortcutAvailability::cannotRead);
}

TEST_F(X11HotKeysTest, RegisteringAHeldKeyIsRefused) {
    letAnotherClientGrabControlOptionK();
    platform::Token token{99};
    EXPECT_EQ(hotKeys->registerEventHotKey(
                  kKey, controlOption, [](bool) {}, token),
              X11HotKeys::eventHotKeyExistsErr);
    EXPECT_FALSE(token);
    EXPECT_EQ(hotKeys->registerEventHotKey(
                  platform::keycode::none, 0, [](bool) {}, token),
              X11HotKeys::paramErr);
}

TEST_F(X11HotKeysTest, ARegisteredKeyFiresOnPressAndReleaseWhateverTheLocks) {
    std::vector<bool> presses;
    platform::Token token;
    ASSERT_EQ(hotKeys->registerEventHotKey(
                  jKey, controlOption, [&](bool pressed) { presses.push_back(pressed); }, token),
              0);
    ASSERT_TRUE(token);
    EXPECT_EQ(hotKeys->isShortcutTaken(jKey, controlOption), ShortcutAvailability::free);

    const auto pressChord = [&] {
        input->press(controlKey);
        input->press(altKey);
        input->tap(jXKey);
        input->release(altKey);
        input->release(controlKey);
        input->sync();
    };
    pressChord();
    ASSERT_TRUE(waitFor([&] { return presses.size() >= 2; }));
    EXPECT_EQ(presses, (std::vector<bool>{true, false}));

    input->tap(capsKey);
    pressChord();
    input->tap(capsKey);
    ASSERT_TRUE(waitFor([&] { return presses.size() >= 4; }));

    EXPECT_EQ(hotKeys->unregisterEventHotKey(token), 0);
    EXPECT_EQ(hotKeys->unregisterEventHotKey(token), X11HotKeys::eventHotKeyInvalidErr);
    pressChord();
    loop.runUntil([] { return false; }, 0.2);
    EXPECT_EQ(presses.size(), 4u);
}

TEST_F(X11HotKeysTest, SystemShortcutsAreTheKeysOtherClientsHold) {
    letAnotherClientGrabControlOptionK();
    platform::Token ours;
    ASSERT_EQ(hotKeys->registerEventHotKey(
                  jKey, controlOption, [](bool) {}, ours),
              0);

    std::vector<platform::SymbolicHotKey> shortcuts;
    ASSERT_EQ(hotKeys->copySymbolicHotKeys(shortcuts), 0);
    const auto held = [&](platform::KeyCode key, std::uint32_t modifiers) {
        return std::any_of(shortcuts.begin(), shortcuts.end(), [&](const auto& shortcut) {
            return shortcut.enabled && shortcut.keyCode == key && shortcut.modifiers == modifiers;
        });
    };
    EXPECT_TRUE(held(kKey, controlOption));
    EXPECT_FALSE(held(jKey, controlOption));  // our own is no system shortcut
    EXPECT_EQ(shortcuts.size(), 1u);
    // The survey let go of nothing of ours.
    EXPECT_EQ(hotKeys->isShortcutTaken(jKey, controlOption), ShortcutAvailability::free);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    xcb_generic_error_t* error = xcb_request_check(
        other, xcb_grab_key_checked(other, 1, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, 44,
                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    EXPECT_TRUE(error);
    std::free(error);
}

}  // namespace
}  // namespace x11test
