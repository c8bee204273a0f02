// The shortcut of the Settings window: read at creation and written back,
// every write persisted, only a real change announced, and the stored key
// the one way a recorded shortcut reaches the chord.
#include <gtest/gtest.h>

#include "app/RootCoordinator.h"
#include "app/SpineTestSupport.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsWindowViewModel.h"
#include "support/StandardOutput.h"

using lirixkro::SRShortcut;
using tarnwick::activationShortcut;
using ViewModel = tarnwick::SettingsWindowView::ViewModel;
namespace modifier = platform::modifier;
namespace keycode = platform::keycode;

namespace {

class SettingsWindowViewModelTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    quillbox::DefaultsManager& defaults() { return quillbox::DefaultsManager::shared(); }
    bool isStored() { return desktop.preferences().objectForKey("activationShortcut").has_value(); }
    std::unique_ptr<ViewModel> makeModel() {
        return std::make_unique<ViewModel>(nullptr, updateController);
    }

    std::shared_ptr<tarnwick::UpdateController> updateController =
        std::make_shared<tarnwick::UpdateController>();
    // Counts the writes of the key through the preferences.
    int writes = 0;
    quillbox::NotificationHandle writeCounter = defaults().registerNotifications(
        activationShortcut, [this](std::optional<lirixkro::SRShortcut::SelfCodable>) { ++writes; });
    ~SettingsWindowViewModelTest() override { defaults().deregisterNotifications(writeCounter); }
};

constexpr platform::KeyCode kKey = 40;

lirixkro::SRShortcutRef controlShiftK() {
    return SRShortcut::shortcutWithCode(kKey, modifier::control | modifier::shift, "\v", "k");
}

}  // namespace

TEST_F(SettingsWindowViewModelTest, TheStoredShortcutIsReadAndWrittenBackAtCreation) {
    const auto stored = defaults().getValue(activationShortcut);
    ASSERT_TRUE(stored) << "the migration stores the default chord";
    auto model = makeModel();
    ASSERT_TRUE(model->shortcut());
    EXPECT_EQ(SRShortcut::SelfCodable::fromShortcut(*model->shortcut()), *stored);
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(defaults().getValue(activationShortcut), stored);
}

TEST_F(SettingsWindowViewModelTest, AnEmptyKeyGivesNoShortcutAndStaysEmptyWithoutALine) {
    defaults().removeValue(activationShortcut);
    quillbox::CapturedOutput output;
    auto model = makeModel();
    EXPECT_EQ(model->shortcut(), nullptr);
    EXPECT_FALSE(isStored());
    EXPECT_TRUE(output.lines().empty());
}

TEST_F(SettingsWindowViewModelTest, ADamagedStoredShortcutIsOneLineNoShortcutAndRemoved) {
    desktop.preferences().setObject("activationShortcut",
                                    platform::PropertyList(platform::PropertyList::Data{1, 2, 3}));
    quillbox::CapturedOutput output;
    auto model = makeModel();
    EXPECT_EQ(output.lines().size(), 1u);
    EXPECT_EQ(model->shortcut(), nullptr);
    EXPECT_FALSE(isStored());
}

TEST_F(SettingsWindowViewModelTest, AnEqualShortcutIsRewrittenWithoutAnnouncingAChange) {
    auto model = makeModel();
    int changes = 0;
    const auto subscription = model->changed().connect([&] { ++changes; });
    writes = 0;

    const auto& same = *model->shortcut();
    model->setShortcut(SRShortcut::shortcutWithCode(same.keyCode(), same.modifierFlags(),
                                                    same.characters(),
                                                    same.charactersIgnoringModifiers()));
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(writes, 1) << "the key is written again";

    model->setShortcut(controlShiftK());
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(writes, 2);
    EXPECT_EQ(defaults().getValue(activationShortcut),
              SRShortcut::SelfCodable::fromShortcut(*controlShiftK()));

    model->setShortcut(nullptr);
    model->setShortcut(nullptr);
    EXPECT_EQ(changes, 2) << "nil again is no change";
    EXPECT_FALSE(isStored());
}

TEST_F(SettingsWindowViewModelTest, AutomaticChecksAreTheUpdatersOwnSettingReadAndWrittenThrough) {
    auto model = makeModel();
    auto& updater = desktop.updater();
    updater.setAutomaticallyChecksForUpdates(true);
    EXPECT_TRUE(model->automaticallyChecksForUpdates());
    model->setAutomaticallyChecksForUpdates(false);
    EXPECT_FALSE(updater.automaticallyChecksForUpdates());
}

TEST_F(SettingsWindowViewModelTest, ARecordedShortcutBringsThePanelAtTheNextKeyAndAClearedOneNone) {
    auto root = tarnwick::RootCoordinator::make();
    const auto panel = root->mainWindowController().window();
    auto& events = desktop.eventMonitors();
    const auto pressDefaultChord = [&] {
        events.flagsChanged(modifier::control, keycode::control);
        events.flagsChanged(modifier::control | modifier::option, keycode::option);
        events.flagsChanged(modifier::control | modifier::option | modifier::shift, keycode::shift);
    };
    auto model = makeModel();

    model->setShortcut(controlShiftK());
    pressDefaultChord();
    EXPECT_FALSE(panel->isVisible()) << "the old chord";
    events.keyDown(kKey, modifier::control | modifier::shift, "\v", "k");
    EXPECT_TRUE(panel->isVisible());

    panel->close();
    model->setShortcut(nullptr);
    events.keyDown(kKey, modifier::control | modifier::shift, "\v", "k");
    pressDefaultChord();
    EXPECT_FALSE(panel->isVisible());

    // A new model doesn't bring the default back.
    model = makeModel();
    EXPECT_EQ(model->shortcut(), nullptr);
}
