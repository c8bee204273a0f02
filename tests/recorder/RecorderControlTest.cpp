#include <gtest/gtest.h>

#include <algorithm>

#include "RecorderTestSupport.h"
#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRExceptions.h"
#include "shortcuts/SRGlobalShortcutMonitor.h"
#include "shortcuts/SRShortcutValidator.h"

namespace lirixkro {
namespace {

using testing::flagsChanged;
using testing::keyDown;
using Notification = SRAccessibilityNotification;

constexpr SRKeyCode keyK = 40, keyA = 0, escape = 53, deleteKey = 51, forwardDelete = 117,
                    space = 49, shiftKey = 56, controlKey = 59, optionKey = 58, commandKey = 55;
constexpr SRModifierFlags controlShift = SRControlFlag | SRShiftFlag;

// A delegate whose answers a test sets; it counts what it was told.
class ScriptedDelegate final : public SRRecorderControlDelegate {
  public:
    std::optional<bool> recorderControlShouldBeginRecording(SRRecorderControl&) override {
        return shouldBegin;
    }
    std::optional<bool> lirixkroShouldBeginRecording(SRRecorderControl&) override {
        return legacyShouldBegin;
    }
    void recorderControlDidBeginRecording(SRRecorderControl& control) override {
        began.push_back(control.isRecording());
    }
    bool recorderControlDidEndRecording(SRRecorderControl&) override {
        ++ended;
        return offersDidEnd;
    }
    bool lirixkroDidEndRecording(SRRecorderControl&) override {
        ++legacyEnded;
        return true;
    }
    std::optional<bool> recorderControlCanRecordShortcut(SRRecorderControl&,
                                                         const SRShortcut&) override {
        return canRecord;
    }
    std::optional<bool> lirixkroCanRecordShortcut(SRRecorderControl&,
                                                  const SRDictionary& dictionary) override {
        legacyDictionaries.push_back(dictionary);
        return legacyCanRecord;
    }
    std::optional<bool> controlIsValidObject(SRRecorderControl&, const SRObservedValue&) override {
        return validObject;
    }
    std::optional<bool> recorderControlShouldUnconditionallyAllowModifierFlags(SRRecorderControl&,
                                                                               SRModifierFlags,
                                                                               SRKeyCode) override {
        return unconditional;
    }
    std::optional<bool> lirixkroShouldUnconditionallyAllowModifierFlags(SRRecorderControl&,
                                                                        SRModifierFlags,
                                                                        SRKeyCode) override {
        return legacyUnconditional;
    }

    std::optional<bool> shouldBegin, legacyShouldBegin, canRecord, legacyCanRecord, validObject,
        unconditional, legacyUnconditional;
    bool offersDidEnd = true;
    std::vector<bool> began;
    int ended = 0, legacyEnded = 0;
    std::vector<SRDictionary> legacyDictionaries;
};

class RecorderControl : public testing::RecorderControlTest {
  protected:
    void begin() {
        ASSERT_TRUE(control->beginRecording());
        host.alerts = 0;
    }
    std::shared_ptr<ScriptedDelegate> delegate = std::make_shared<ScriptedDelegate>();
};

TEST_F(RecorderControl, StartsWithTheDefaultRulesAndNoValue) {
    SRRecorderControl fresh;
    EXPECT_EQ(fresh.allowedModifierFlags(), 0x1E0000u);
    EXPECT_EQ(fresh.requiredModifierFlags(), 0u);
    EXPECT_FALSE(fresh.allowsEmptyModifierFlags());
    EXPECT_FALSE(fresh.allowsModifierFlagsOnlyShortcut);
    EXPECT_TRUE(fresh.drawsASCIIEquivalentOfShortcut);
    EXPECT_TRUE(fresh.allowsEscapeToCancelRecording);
    EXPECT_TRUE(fresh.allowsDeleteToClearShortcutAndEndRecording);
    EXPECT_TRUE(fresh.pausesGlobalShortcutMonitorWhileRecording);
    EXPECT_FALSE(fresh.stringValueRespectsUserInterfaceLayoutDirection);
    EXPECT_FALSE(fresh.isRecording());
    EXPECT_TRUE(fresh.isEnabled());
    EXPECT_EQ(fresh.mouseTrackingButtonTag(), -1);
    EXPECT_EQ(fresh.objectValue(), nullptr);
    EXPECT_EQ(fresh.style()->identifier(), "sr-mojave");
    EXPECT_EQ(fresh.drawingLabel(), "Record Shortcut");
}

TEST_F(RecorderControl, RuleSetsThatContradictThemselvesRaise) {
    try {
        control->setAllowedModifierFlags(SRCommandFlag, SRShiftFlag, false);
        FAIL() << "a required flag that is not allowed was taken";
    } catch (const SRInvalidArgumentException& error) {
        EXPECT_STREQ(error.what(), "Required flags (131072) MUST be allowed (1048576)");
    }
    try {
        control->setAllowedModifierFlags(0x1E0000, SRShiftFlag, true);
        FAIL() << "empty flags beside required ones were taken";
    } catch (const SRInvalidArgumentException& error) {
        EXPECT_STREQ(error.what(),
                     "Empty modifier flags MUST be disallowed if required modifier flags are not "
                     "empty.");
    }
    // Flags beyond the four are masked away before the checks.
    EXPECT_NO_THROW(control->setAllowedModifierFlags(0x1E0000 | 0x800000, 0x800000, false));
    EXPECT_EQ(control->allowedModifierFlags(), 0x1E0000u);
}

TEST_F(RecorderControl, ChangingTheRulesWhileRecordingEndsItAndKeepsTheValue) {
    control->setObjectValue(SRShortcut::shortcutWithCode(keyK, SRCommandFlag));
    std::vector<std::string> changes;
    auto observation =
        control->observe([&](std::string_view field) { changes.emplace_back(field); });
    begin();
    changes.clear();
    control->setAllowedModifierFlags(SRCommandFlag | SRShiftFlag, SRCommandFlag, false);
    EXPECT_FALSE(control->isRecording());
    ASSERT_TRUE(control->objectValue());
    EXPECT_EQ(control->objectValue()->keyCode(), keyK);
    EXPECT_EQ(changes,
              (std::vector<std::string>{"isRecording", "allowedModifierFlags",
                                        "requiredModifierFlags", "allowsEmptyModifierFlags"}));

    // The same rules again change nothing and don't disturb a recording.
    begin();
    control->setAllowedModifierFlags(SRCommandFlag | SRShiftFlag, SRCommandFlag, false);
    EXPECT_TRUE(control->isRecording());
}

TEST_F(RecorderControl, ValidityNeedsRequiredFlagsAndAllowanceFallsBackToTheDelegate) {
    control->setAllowedModifierFlags(SRCommandFlag | SRShiftFlag, SRCommandFlag, false);
    EXPECT_TRUE(control->areModifierFlagsValid(SRCommandFlag | SRShiftFlag, keyK));
    EXPECT_FALSE(control->areModifierFlagsValid(SRShiftFlag, keyK)) << "Command is required";
    EXPECT_FALSE(control->areModifierFlagsAllowed(SRCommandFlag | SRControlFlag, keyK));
    EXPECT_FALSE(control->areModifierFlagsAllowed(0, keyK));
    // Flags beyond the four play no part.
    EXPECT_TRUE(control->areModifierFlagsAllowed(SRCommandFlag | 0x800000, keyK));

    control->setDelegate(delegate);
    delegate->legacyUnconditional = true;
    EXPECT_TRUE(control->areModifierFlagsAllowed(SRCommandFlag | SRControlFlag, keyK));
    delegate->unconditional = false;
    EXPECT_FALSE(control->areModifierFlagsAllowed(SRCommandFlag | SRControlFlag, keyK))
        << "the current form is asked first";
    EXPECT_FALSE(control->areModifierFlagsValid(SRControlFlag, keyK))
        << "a permission doesn't make up for a missing required flag";
}

TEST_F(RecorderControl, KeysAreTakenOnlyWhenEnabledFocusedAndNotTracking) {
    host.firstResponder = false;
    EXPECT_FALSE(control->canCaptureKeyEvent());
    EXPECT_TRUE(log.contains(quillbox::LogLevel::debug, "The control is not the first responder"));
    host.firstResponder = true;
    EXPECT_TRUE(control->canCaptureKeyEvent());
    control->mouseDown({10, 10});
    EXPECT_FALSE(control->canCaptureKeyEvent());
    EXPECT_TRUE(log.contains("The control is tracking 2"));
    EXPECT_FALSE(control->keyDown(keyDown(space)));
    control->mouseUp({500, 500});
    control->setEnabled(false);
    EXPECT_FALSE(control->canCaptureKeyEvent());
    EXPECT_TRUE(log.contains("The control is disabled"));
}

TEST_F(RecorderControl, BeginningRecordingTakesTheFocusPausesTheMonitorAndTellsEveryone) {
    control->setDelegate(delegate);
    monitors.flagsChanged(SRShiftFlag | SRControlFlag | 0x10000, shiftKey);
    control->setAllowedModifierFlags(SRShiftFlag | SRCommandFlag, 0, false);
    auto& shared = SRGlobalShortcutMonitor::sharedMonitor();
    ASSERT_NE(shared.state(), SRGlobalShortcutMonitor::State::paused);
    EXPECT_EQ(control->toolTip(), "Click to record shortcut");

    ASSERT_TRUE(control->beginRecording());
    EXPECT_TRUE(host.firstResponder);
    EXPECT_EQ(control->lastSeenModifierFlags(), SRShiftFlag) << "held flags, masked with allowed";
    EXPECT_EQ(host.toolTip, "Press keys now");
    EXPECT_EQ(shared.state(), SRGlobalShortcutMonitor::State::paused);
    EXPECT_TRUE(control->didPauseGlobalShortcutMonitor());
    EXPECT_EQ(delegate->began, std::vector<bool>{true});
    EXPECT_EQ(host.notifications,
              (std::vector<Notification>{Notification::layoutChanged, Notification::titleChanged}));
    EXPECT_TRUE(control->beginRecording()) << "already recording";
    EXPECT_EQ(delegate->began.size(), 1u);

    control->endRecording();
    EXPECT_NE(shared.state(), SRGlobalShortcutMonitor::State::paused);
    EXPECT_EQ(host.toolTip, "Click to record shortcut");
    EXPECT_EQ(control->lastSeenModifierFlags(), 0u);
    EXPECT_EQ(delegate->ended, 1);
    EXPECT_EQ(delegate->legacyEnded, 0) << "the current form was offered";
}

TEST_F(RecorderControl, ARefusedBeginningBeeps) {
    control->setDelegate(delegate);
    delegate->legacyShouldBegin = false;
    EXPECT_FALSE(control->beginRecording());
    EXPECT_EQ(host.alerts, 1);
    delegate->shouldBegin = true;
    host.acceptsFocus = false;
    EXPECT_FALSE(control->beginRecording()) << "the window didn't give the focus";
    EXPECT_EQ(host.alerts, 2);
    control->setEnabled(false);
    EXPECT_FALSE(control->beginRecording());
    EXPECT_EQ(host.alerts, 2) << "a disabled control just says no";
}

TEST_F(RecorderControl, TheSharedMonitorResumesOnlyIfThisControlPausedIt) {
    auto& shared = SRGlobalShortcutMonitor::sharedMonitor();
    testing::FakeRecorderHost otherHost;
    SRRecorderControl other;
    other.setHost(&otherHost);
    other.pausesGlobalShortcutMonitorWhileRecording = false;

    ASSERT_TRUE(other.beginRecording());
    EXPECT_NE(shared.state(), SRGlobalShortcutMonitor::State::paused);
    begin();
    other.endRecording();
    EXPECT_EQ(shared.state(), SRGlobalShortcutMonitor::State::paused)
        << "the other control never paused it";
    control->endRecording();
    EXPECT_NE(shared.state(), SRGlobalShortcutMonitor::State::paused);
}

TEST_F(RecorderControl, EscapeCancelsDeleteClearsAndWithAModifierBothAreShortcuts) {
    control->setObjectValue(SRShortcut::shortcutWithCode(keyK, SRCommandFlag));
    begin();
    EXPECT_TRUE(control->keyDown(keyDown(escape)));
    EXPECT_FALSE(control->isRecording());
    EXPECT_EQ(control->objectValue()->keyCode(), keyK) << "Escape keeps the value";
    EXPECT_TRUE(log.contains("Cancel via Esc"));

    begin();
    EXPECT_TRUE(control->keyDown(keyDown(escape, SRCommandFlag)));
    EXPECT_FALSE(control->isRecording());
    EXPECT_EQ(control->objectValue()->keyCode(), escape) << "Command-Escape is a shortcut";
    EXPECT_EQ(control->objectValue()->modifierFlags(), SRCommandFlag);

    for (SRKeyCode key : {deleteKey, forwardDelete}) {
        control->setObjectValue(SRShortcut::shortcutWithCode(keyK, SRCommandFlag));
        begin();
        EXPECT_TRUE(control->keyDown(keyDown(key)));
        EXPECT_EQ(control->objectValue(), nullptr) << key;
    }
    begin();
    EXPECT_TRUE(control->keyDown(keyDown(deleteKey, SROptionFlag)));
    ASSERT_TRUE(control->objectValue());
    EXPECT_EQ(control->objectValue()->keyCode(), deleteKey);

    control->allowsEscapeToCancelRecording = false;
    begin();
    EXPECT_TRUE(control->keyDown(keyDown(escape)));
    EXPECT_TRUE(control->isRecording()) << "a plain Escape is then refused as a shortcut";
    EXPECT_EQ(host.alerts, 1);
}

TEST_F(RecorderControl, SpaceBeginsRecordingAndOtherKeysPassWhileIdle) {
    host.firstResponder = true;
    EXPECT_FALSE(control->keyDown(keyDown(keyK, SRCommandFlag)));
    EXPECT_FALSE(control->isRecording());
    EXPECT_TRUE(control->keyDown(keyDown(space)));
    EXPECT_TRUE(control->isRecording());
    EXPECT_TRUE(log.contains("Begin recording via Space"));
    EXPECT_FALSE(control->keyDown(keyDown(SRKeyCodeNone, SRCommandFlag)));
    EXPECT_TRUE(log.contains("Invalid key code"));
}

TEST_F(RecorderControl, APlainLetterBeepsAndRecordingGoesOn) {
    begin();
    EXPECT_TRUE(control->keyDown(keyDown(keyA)));
    EXPECT_TRUE(control->isRecording());
    EXPECT_EQ(host.alerts, 1);
    EXPECT_EQ(control->objectValue(), nullptr);

    EXPECT_TRUE(control->keyDown(keyDown(keyK, controlShift)));
    EXPECT_FALSE(control->isRecording());
    ASSERT_TRUE(control->objectValue());
    EXPECT_EQ(control->objectValue()->modifierFlags(), controlShift);
    EXPECT_EQ(control->stringValue(), "⌃⇧K");
    EXPECT_TRUE(log.contains("Valid and accepted shortcut"));

    control->setAllowedModifierFlags(0x1E0000, 0, true);
    begin();
    EXPECT_TRUE(control->keyDown(keyDown(keyA)));
    EXPECT_EQ(control->stringValue(), "A") << "allowed once empty flags are";
}

TEST_F(RecorderControl, AChordOfModifiersAloneEndsWhenTheLastKeyGoesUp) {
    control->allowsModifierFlagsOnlyShortcut = true;
    begin();
    control->flagsChanged(flagsChanged(controlKey, SRControlFlag));
    control->flagsChanged(flagsChanged(optionKey, SRControlFlag | SROptionFlag));
    EXPECT_EQ(control->drawingLabel(), "⌃⌥");
    control->flagsChanged(flagsChanged(shiftKey, SRControlFlag | SROptionFlag | SRShiftFlag));
    // Letting go one by one: the chord stays as it was held together.
    control->flagsChanged(flagsChanged(optionKey, SRControlFlag | SRShiftFlag));
    control->flagsChanged(flagsChanged(controlKey, SRShiftFlag));
    EXPECT_TRUE(control->isRecording());
    control->flagsChanged(flagsChanged(shiftKey, 0));
    EXPECT_FALSE(control->isRecording());
    ASSERT_TRUE(control->objectValue());
    EXPECT_EQ(control->objectValue()->keyCode(), SRKeyCodeNone);
    EXPECT_EQ(control->objectValue()->modifierFlags(), SRControlFlag | SROptionFlag | SRShiftFlag);
    EXPECT_EQ(control->stringValue(), "⌃⌥⇧");
    EXPECT_EQ(host.alerts, 0);
}

TEST_F(RecorderControl, ModifiersAloneNeedTheirOwnPermission) {
    begin();
    control->flagsChanged(flagsChanged(commandKey, SRCommandFlag));
    EXPECT_EQ(control->lastSeenModifierFlags(), SRCommandFlag);
    control->flagsChanged(flagsChanged(commandKey, 0));
    EXPECT_TRUE(control->isRecording()) << "without the permission no chord ends recording";
    EXPECT_EQ(host.alerts, 1) << "empty flags are not allowed";

    control->allowsModifierFlagsOnlyShortcut = true;
    control->setAllowedModifierFlags(SRControlFlag | SRShiftFlag, 0, false);
    begin();
    control->flagsChanged(flagsChanged(controlKey, SRControlFlag));
    control->flagsChanged(flagsChanged(commandKey, SRControlFlag | SRCommandFlag));
    EXPECT_EQ(host.alerts, 1) << "Command is not allowed";
    EXPECT_EQ(control->lastSeenModifierFlags(), SRControlFlag) << "the old flags are kept";
    control->flagsChanged(flagsChanged(commandKey, SRControlFlag));
    control->flagsChanged(flagsChanged(controlKey, 0));
    EXPECT_EQ(control->objectValue()->modifierFlags(), SRControlFlag);
}

TEST_F(RecorderControl, ARefusedChordStartsOver) {
    control->allowsModifierFlagsOnlyShortcut = true;
    control->setDelegate(delegate);
    delegate->canRecord = false;
    begin();
    control->flagsChanged(flagsChanged(controlKey, SRControlFlag));
    control->flagsChanged(flagsChanged(controlKey, 0));
    EXPECT_TRUE(control->isRecording());
    EXPECT_EQ(host.alerts, 1);
    EXPECT_EQ(control->lastSeenModifierFlags(), 0u);
    EXPECT_TRUE(log.contains("Delegate rejected"));
}

TEST_F(RecorderControl, TheDelegateIsAskedInItsCurrentFormThenTheLegacyOnes) {
    control->setDelegate(delegate);
    const auto shortcut = SRShortcut::shortcutWithCode(keyK, SRCommandFlag);
    EXPECT_TRUE(control->canEndRecordingWithObjectValue(shortcut)) << "nothing offered";
    delegate->validObject = false;
    EXPECT_FALSE(control->canEndRecordingWithObjectValue(shortcut));
    delegate->legacyCanRecord = true;
    EXPECT_TRUE(control->canEndRecordingWithObjectValue(shortcut));
    ASSERT_FALSE(delegate->legacyDictionaries.empty());
    EXPECT_EQ(delegate->legacyDictionaries.back(), shortcut->dictionaryRepresentation());
    delegate->canRecord = false;
    EXPECT_FALSE(control->canEndRecordingWithObjectValue(shortcut));

    delegate->offersDidEnd = false;
    begin();
    control->endRecording();
    EXPECT_EQ(delegate->legacyEnded, 1);
}

TEST_F(RecorderControl, TheValidatorPresentsARefusalOnTheControlsWindow) {
    auto validator = std::make_shared<SRShortcutValidator>();
    control->setDelegate(validator);
    hotKeys.setSymbolicHotKeys({{true, keyK, platform::carbonModifier::command}});
    begin();
    EXPECT_TRUE(control->keyDown(keyDown(keyK, SRCommandFlag)));
    EXPECT_TRUE(control->isRecording()) << "the system holds Command-K";
    ASSERT_EQ(host.sheets.size(), 1u);
    EXPECT_EQ(host.sheets[0].localizedDescription, "The \"Command-K\" shortcut can't be used!");
    EXPECT_EQ(host.alerts, 1);

    hotKeys.setCopySymbolicHotKeysStatus(-1);
    EXPECT_TRUE(control->keyDown(keyDown(keyA, SRCommandFlag)));
    EXPECT_EQ(host.sheets.size(), 1u) << "no error to show when the system can't be asked";
}

TEST_F(RecorderControl, ClicksStartRecordingAndHitTheButtonsOnlyWhereTheyAre) {
    control->mouseDown({20, 10});
    EXPECT_EQ(control->mouseTrackingButtonTag(), SRRecorderControl::mainButtonTag);
    control->mouseUp({500, 10});
    EXPECT_FALSE(control->isRecording()) << "let go outside";
    EXPECT_EQ(control->mouseTrackingButtonTag(), -1);
    control->mouseDown({20, 10});
    control->mouseUp({30, 12});
    EXPECT_TRUE(control->isRecording());

    control->endRecording();
    control->setObjectValue(SRShortcut::shortcutWithCode(keyK, SRCommandFlag));
    begin();
    auto guides = control->layoutGuides();
    const auto centre = [](const platform::CGRect& r) {
        return platform::CGPoint{r.origin.x + r.size.width / 2, r.origin.y + r.size.height / 2};
    };
    control->mouseDown(centre(guides.clearButtonDrawingGuide));
    EXPECT_EQ(control->mouseTrackingButtonTag(), SRRecorderControl::clearButtonTag);
    control->mouseUp(centre(guides.clearButtonDrawingGuide));
    EXPECT_FALSE(control->isRecording());
    EXPECT_EQ(control->objectValue(), nullptr);

    control->setObjectValue(SRShortcut::shortcutWithCode(keyK, SRCommandFlag));
    begin();
    guides = control->layoutGuides();
    control->mouseDown(centre(guides.cancelButtonDrawingGuide));
    EXPECT_EQ(control->mouseTrackingButtonTag(), SRRecorderControl::cancelButtonTag);
    control->mouseUp(centre(guides.clearButtonDrawingGuide));
    EXPECT_TRUE(control->isRecording()) << "let go over the other button";
    control->mouseDown(centre(guides.cancelButtonLayoutGuide));
    control->mouseUp(centre(guides.cancelButtonLayoutGuide));
    EXPECT_FALSE(control->isRecording());
    EXPECT_EQ(control->objectValue()->keyCode(), keyK);

    begin();
    control->mouseDown(centre(guides.labelDrawingGuide));
    EXPECT_EQ(control->mouseTrackingButtonTag(), -1) << "the label isn't a button while recording";
}

TEST_F(RecorderControl, TheLabelShowsHeldModifiersPromptsAndTheValue) {
    EXPECT_EQ(control->stringValue(), "");
    begin();
    EXPECT_EQ(control->drawingLabel(), "Press keys now");
    control->flagsChanged(flagsChanged(commandKey, SRCommandFlag | SRShiftFlag));
    EXPECT_EQ(control->drawingLabel(), "⇧⌘");
    control->endRecording();

    control->setObjectValue(SRShortcut::shortcutWithCode(96, SRCommandFlag));
    EXPECT_EQ(control->drawingLabel(), "⌘F5");
    control->setObjectValue(SRShortcut::shortcutWithCode(250, SRCommandFlag));
    EXPECT_EQ(control->stringValue(), "⌘<250>") << "a key with no text";

    control->setObjectValue(SRShortcut::shortcutWithCode(keyK, controlShift));
    host.appearance.layoutDirection = SRLayoutDirection::rightToLeft;
    EXPECT_EQ(control->stringValue(), "⌃⇧K") << "the direction is not respected by default";
    control->stringValueRespectsUserInterfaceLayoutDirection = true;
    EXPECT_EQ(control->stringValue(), "K⇧⌃");
    EXPECT_EQ(control->accessibilityValue(), "Control-Shift-K");

    ScopedStringTable german(std::map<std::string, std::string, std::less<>>{
        {"Record Shortcut", "Kurzbefehl aufnehmen"}});
    control->setObjectValue(nullptr);
    EXPECT_EQ(control->drawingLabel(), "Kurzbefehl aufnehmen");
}

TEST_F(RecorderControl, ButtonToolTipsAreFoundWhereTheButtonsAre) {
    control->setObjectValue(SRShortcut::shortcutWithCode(keyK, SRCommandFlag));
    EXPECT_EQ(control->toolTipAtPoint({150, 10}), std::nullopt) << "no buttons while idle";
    begin();
    const auto guides = control->layoutGuides();
    const auto inside = [](const platform::CGRect& r) {
        return platform::CGPoint{r.origin.x + 1, r.origin.y + r.size.height / 2};
    };
    EXPECT_EQ(control->toolTipAtPoint(inside(guides.clearButtonDrawingGuide)),
              "Delete current shortcut");
    EXPECT_EQ(control->toolTipAtPoint(inside(guides.cancelButtonDrawingGuide)),
              control->cancelButtonToolTip());
}

TEST_F(RecorderControl, ADictionaryIntoAnEmptyControlTurnsOnTheCompatibilityMode) {
    auto store = std::make_shared<SRKeyValueStore>();
    control->bindValue(store, "value");
    SRDictionary dictionary = {{"keyCode", SRNumber(keyK)},
                               {"modifierFlags", SRNumber(SRCommandFlag)}};
    control->setObjectValue(SRObservedValue(dictionary));
    EXPECT_TRUE(control->isCompatibilityModeEnabled());
    const auto texts = log.texts();
    EXPECT_EQ(std::count_if(texts.begin(), texts.end(),
                            [](const std::string& text) {
                                return text.rfind("WARNING: Floveil 2 compatibility mode enabled.",
                                                  0) == 0;
                            }),
              1);
    ASSERT_TRUE(control->objectValue());
    EXPECT_EQ(control->objectValue()->keyCode(), keyK);

    begin();
    control->keyDown(keyDown(keyA, SRCommandFlag));
    const auto bound = store->valueForKeyPath("value");
    ASSERT_TRUE(std::holds_alternative<SRDictionary>(bound))
        << "the bound value goes out as a dictionary";
    EXPECT_EQ(SRShortcutFromObservedValue(bound)->keyCode(), keyA);

    // The bound object's changes come back.
    store->setValueForKeyPath(SRNull{}, "value");
    EXPECT_EQ(control->objectValue(), nullptr);
}

TEST_F(RecorderControl, AnEqualValueChangesNothing) {
    control->setObjectValue(SRShortcut::shortcutWithCode(keyK, SRCommandFlag, "k", "k"));
    host.notifications.clear();
    const int displays = host.displays;
    control->setObjectValue(SRShortcut::shortcutWithCode(keyK, SRCommandFlag, "x", "x"));
    EXPECT_EQ(control->objectValue()->characters(), "k");
    EXPECT_TRUE(host.notifications.empty());
    EXPECT_EQ(host.displays, displays);
    control->setObjectValue(nullptr);
    EXPECT_EQ(host.notifications,
              (std::vector<Notification>{Notification::titleChanged, Notification::valueChanged}));
}

TEST_F(RecorderControl, TheScreenReadersActionsPressCancelAndDelete) {
    control->setObjectValue(SRShortcut::shortcutWithCode(keyK, SRCommandFlag));
    EXPECT_FALSE(control->accessibilityPerformCancel()) << "nothing to cancel";
    EXPECT_FALSE(control->accessibilityPerformDelete());
    EXPECT_TRUE(control->accessibilityPerformPress());
    EXPECT_TRUE(control->accessibilityPerformCancel());
    EXPECT_EQ(control->objectValue()->keyCode(), keyK);
    EXPECT_TRUE(control->accessibilityPerformPress());
    EXPECT_TRUE(control->accessibilityPerformDelete());
    EXPECT_EQ(control->objectValue(), nullptr);
}

TEST_F(RecorderControl, LosingTheFocusOrTheKeyWindowEndsRecording) {
    int actions = 0;
    auto observation = control->observeAction([&](SRRecorderControl&) { ++actions; });
    begin();
    control->resignFirstResponder();
    EXPECT_FALSE(control->isRecording());
    begin();
    control->windowDidResignKey();
    EXPECT_FALSE(control->isRecording());
    begin();
    control->commitEditing();
    EXPECT_FALSE(control->isRecording());
    EXPECT_EQ(actions, 3) << "each end sends the action";

    host.keyView = false;
    begin();
    control->endRecording();
    EXPECT_FALSE(host.firstResponder) << "a control that is no key view gives the focus back";
}

}  // namespace
}  // namespace lirixkro
