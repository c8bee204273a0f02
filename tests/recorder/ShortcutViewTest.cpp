#include <gtest/gtest.h>

#include "RecorderTestSupport.h"
#include "settings/ShortcutView.h"

namespace tarnwick {
namespace {

using lirixkro::SRShortcut;
using lirixkro::SRShortcutRef;
using lirixkro::testing::keyDown;

// The shortcut view with its two bindings over plain values, as the Settings
// window binds them to its state and its model.
class ShortcutViewTest : public lirixkro::testing::RecorderControlTest {
  protected:
    ShortcutView view{quillbox::Binding<bool>([this] { return recording; },
                                              [this](bool value) { recording = value; }),
                      quillbox::Binding<SRShortcutRef>([this] { return stored; },
                                                       [this](SRShortcutRef value) {
                                                           stored = std::move(value);
                                                           ++writes;
                                                       })};

    std::shared_ptr<lirixkro::SRRecorderControl> make() {
        coordinator = view.makeCoordinator();
        auto made = view.makeView(coordinator);
        made->setHost(&host);
        view.updateView(*made);
        return made;
    }

    bool recording = false;
    SRShortcutRef stored = SRShortcut::shortcutWithCode(40, lirixkro::SRCommandFlag);
    int writes = 0;
    std::shared_ptr<ShortcutView::Coordinator> coordinator;
};

TEST_F(ShortcutViewTest, PassesTheSettingsParametersOnAndKeepsTheControlEnabled) {
    view.enabled = false;
    view.drawsASCIIEquivalentOfShortcut = false;
    auto made = make();
    EXPECT_TRUE(made->isEnabled()) << "enabled is carried, not passed on";
    EXPECT_TRUE(made->allowsModifierFlagsOnlyShortcut);
    EXPECT_FALSE(made->drawsASCIIEquivalentOfShortcut);
    EXPECT_EQ(made->allowedModifierFlags(), 0x1E0000u);
    EXPECT_EQ(made->delegate(), coordinator);
    ASSERT_TRUE(made->objectValue());
    EXPECT_EQ(made->objectValue()->keyCode(), 40);

    stored = SRShortcut::shortcutWithCode(0, lirixkro::SRControlFlag);
    view.updateView(*made);
    EXPECT_EQ(made->objectValue()->keyCode(), 0) << "the binding feeds the control at each update";
}

TEST_F(ShortcutViewTest, EscapeWritesTheUnchangedValueBackAndDeleteWritesNothing) {
    auto made = make();
    ASSERT_TRUE(made->beginRecording());
    EXPECT_TRUE(recording);
    EXPECT_EQ(writes, 0) << "nothing reaches the binding while recording";
    made->keyDown(keyDown(53));
    EXPECT_FALSE(recording);
    EXPECT_EQ(writes, 1);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->keyCode(), 40);

    ASSERT_TRUE(made->beginRecording());
    made->keyDown(keyDown(51));
    EXPECT_FALSE(recording);
    EXPECT_EQ(stored, nullptr);

    ASSERT_TRUE(made->beginRecording());
    made->flagsChanged(lirixkro::testing::flagsChanged(59, lirixkro::SRControlFlag));
    made->flagsChanged(lirixkro::testing::flagsChanged(59, 0));
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->keyCode(), lirixkro::SRKeyCodeNone) << "a chord of modifiers alone";
}

}  // namespace
}  // namespace tarnwick
