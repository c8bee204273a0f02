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
constexpr xcb_keycode_t jXKey = 44, kXKey = 45;
constexpr std::uint32_t controlOption = carbon::control | carbon::option;

class X11HotKeysTest : public InputBackendTest {
  protected:
    void SetUp() override {
        InputBackendTest::SetUp();
        if (HasFatalFailure())
            return;
        hotKeys = std::make_unique<X11HotKeys>(*source);
        other = xcb_connect(display.name().c_str(), nullptr);
    }
    void TearDown() override {
        xcb_disconnect(other);
        InputBackendTest::TearDown();
    }

    // Whether another client gets Control-Option and the key, as a window
    // manager takes its key bindings.
    bool otherClientGrabs(xcb_keycode_t key) {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
        xcb_generic_error_t* error = xcb_request_check(
            other, xcb_grab_key_checked(other, 1, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, key,
                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        const bool granted = error == nullptr;
        std::free(error);
        return granted;
    }

    std::unique_ptr<X11HotKeys> hotKeys;
    xcb_connection_t* other = nullptr;
};

TEST_F(X11HotKeysTest, AKeyAnotherClientHoldsIsTakenAndCannotBeRegistered) {
    ASSERT_TRUE(otherClientGrabs(kXKey));
    EXPECT_EQ(hotKeys->isShortcutTaken(kKey, controlOption), ShortcutAvailability::taken);
    EXPECT_EQ(hotKeys->isShortcutTaken(kKey, carbon::control), ShortcutAvailability::free);
    EXPECT_EQ(hotKeys->isShortcutTaken(jKey, controlOption), ShortcutAvailability::free);
    EXPECT_TRUE(otherClientGrabs(jXKey)) << "asking took nothing away";
    // Keys the server can't grab at all can't be read.
    EXPECT_EQ(hotKeys->isShortcutTaken(platform::keycode::none, 0),
              ShortcutAvailability::cannotRead);
    EXPECT_EQ(hotKeys->isShortcutTaken(kKey, carbon::function), ShortcutAvailability::cannotRead);

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
    ASSERT_TRUE(otherClientGrabs(kXKey));
    platform::Token ours;
    ASSERT_EQ(hotKeys->registerEventHotKey(
                  jKey, controlOption, [](bool) {}, ours),
              0);

    std::vector<platform::SymbolicHotKey> shortcuts;
    ASSERT_EQ(hotKeys->copySymbolicHotKeys(shortcuts), 0);
    ASSERT_EQ(shortcuts.size(), 1u) << "our own is no system shortcut";
    EXPECT_TRUE(shortcuts.front().enabled);
    EXPECT_EQ(shortcuts.front().keyCode, kKey);
    EXPECT_EQ(shortcuts.front().modifiers, controlOption);
    // The survey let go of nothing of ours.
    EXPECT_EQ(hotKeys->isShortcutTaken(jKey, controlOption), ShortcutAvailability::free);
    EXPECT_FALSE(otherClientGrabs(jXKey));
}

}  // namespace
}  // namespace x11test
