#include <gtest/gtest.h>

#include "shortcuts/SRShortcut.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

using platform::Event;
using platform::EventType;

using testing::commandShift;

class ShortcutTest : public testing::ShortcutTest {
  protected:
    static Event keyEvent(EventType type, SRKeyCode keyCode, SRModifierFlags flags) {
        Event event;
        event.type = type;
        event.keyCode = keyCode;
        event.modifierFlags = flags;
        return event;
    }
};

TEST_F(ShortcutTest, ConstructionMasksTheFlagsAndComputesOnlyMissingTexts) {
    auto shortcut = SRShortcut::shortcutWithCode(0, SRCocoaModifierFlagsMask | 0x800000);
    EXPECT_EQ(shortcut->modifierFlags(), SRCocoaModifierFlagsMask);

    auto shiftA = SRShortcut::shortcutWithCode(0, SRShiftFlag);
    EXPECT_EQ(shiftA->characters(), "A");
    EXPECT_EQ(shiftA->charactersIgnoringModifiers(), "a");
    EXPECT_EQ(SRShortcut::shortcutWithCode(0, SRShiftFlag, "x", "")->charactersIgnoringModifiers(),
              "");
    EXPECT_EQ(SRShortcut::shortcutWithCode(SRKeyCodeNone, SRControlFlag)->characters(),
              std::nullopt);
}

TEST_F(ShortcutTest, EqualityAndHashIgnoreTheTextsAndCarbonNumberingFollowsTheKey) {
    auto onUS = SRShortcut::shortcutWithCode(16, SRCommandFlag, "y", "y");
    auto onGerman = SRShortcut::shortcutWithCode(16, SRCommandFlag, "z", "z");
    EXPECT_EQ(*onUS, *onGerman);
    EXPECT_EQ(std::hash<SRShortcut>{}(*onUS), std::hash<SRShortcut>{}(*onGerman));
    EXPECT_TRUE(onUS->isEqual(onGerman));
    EXPECT_FALSE(onUS->isEqual(SRValue()));
    EXPECT_FALSE(onUS->isEqual(SRShortcutRef()));
    EXPECT_FALSE(onUS->isEqual(onUS->dictionaryRepresentation()));
    EXPECT_FALSE(onUS->isEqualToShortcut(*SRShortcut::shortcutWithCode(16, commandShift)));
    EXPECT_EQ(SRShortcut::shortcutWithCode(0, SRCommandFlag)->hash(), 0x100000u);

    EXPECT_EQ(SRShortcut::shortcutWithCode(96, SRCommandFlag)->carbonModifierFlags(), 0x800100u);
    EXPECT_EQ(SRShortcut::shortcutWithCode(0, SRCommandFlag)->carbonModifierFlags(), 0x100u);
    EXPECT_EQ(SRShortcut::shortcutWithCode(0, SRCocoaModifierFlagsMask)->carbonModifierFlags(),
              0x1B00u);
    const char* critical = "#Critical SRKeyCodeNone has no representation in Carbon";
    EXPECT_FALSE(log.contains(critical));
    EXPECT_EQ(SRShortcut::shortcutWithCode(SRKeyCodeNone, 0)->carbonKeyCode(), 65535u);
    EXPECT_TRUE(log.contains(quillbox::LogLevel::fault, critical));
}

TEST_F(ShortcutTest, KeyEventsKeepTheirTexts) {
    auto event = keyEvent(EventType::keyDown, 40, commandShift | platform::modifier::function);
    event.characters = "K";
    event.charactersIgnoringModifiers = "k";
    auto shortcut = SRShortcut::shortcutWithEvent(event);
    ASSERT_TRUE(shortcut);
    EXPECT_EQ(shortcut->keyCode(), 40);
    EXPECT_EQ(shortcut->modifierFlags(), commandShift);
    EXPECT_EQ(shortcut->characters(), "K");

    auto ignoring = SRShortcut::shortcutWithEvent(event, true);
    EXPECT_EQ(ignoring->characters(), "");
    EXPECT_EQ(ignoring->charactersIgnoringModifiers(), "");

    event.characters.reset();
    event.charactersIgnoringModifiers.reset();
    EXPECT_EQ(SRShortcut::shortcutWithEvent(event)->characters(), "K")
        << "what the event lacks is computed";
}

TEST_F(ShortcutTest, AModifierKeyGivesModifiersAloneAndOtherEventsNothing) {
    // The Command key going up: the event no longer carries Command.
    auto commandUp = SRShortcut::shortcutWithEvent(keyEvent(EventType::flagsChanged, 55, 0));
    ASSERT_TRUE(commandUp);
    EXPECT_EQ(commandUp->keyCode(), SRKeyCodeNone);
    EXPECT_EQ(commandUp->modifierFlags(), SRCommandFlag);
    EXPECT_EQ(commandUp->characters(), std::nullopt);

    const std::vector<std::pair<SRKeyCode, SRModifierFlags>> keys = {
        {54, SRCommandFlag}, {58, SROptionFlag},  {61, SROptionFlag}, {56, SRShiftFlag},
        {60, SRShiftFlag},   {59, SRControlFlag}, {62, SRControlFlag}};
    for (const auto& [keyCode, flag] : keys) {
        auto shortcut = SRShortcut::shortcutWithEvent(
            keyEvent(EventType::flagsChanged, keyCode, SRCommandFlag));
        EXPECT_EQ(shortcut->modifierFlags(), SRCommandFlag | flag) << keyCode;
    }

    auto capsLock = SRShortcut::shortcutWithEvent(
        keyEvent(EventType::flagsChanged, 57, SRControlFlag | SROptionFlag), true);
    EXPECT_EQ(capsLock->modifierFlags(), SRControlFlag | SROptionFlag);
    EXPECT_EQ(capsLock->characters(), "");

    EXPECT_FALSE(SRShortcut::shortcutWithEvent(keyEvent(EventType::mouseMoved, 0, 0)));
    EXPECT_EQ(log.texts(),
              std::vector<std::string>{"#Error aKeyboardEvent must be either NSEventTypeKeyUp, "
                                       "NSEventTypeKeyDown or NSEventTypeFlagsChanged, but got 5"});
}

TEST_F(ShortcutTest, KeyEquivalentsAreModifierSymbolsThenAKey) {
    EXPECT_FALSE(SRShortcut::shortcutWithKeyEquivalent(""));
    EXPECT_FALSE(SRShortcut::shortcutWithKeyEquivalent("⌘⌘a"));
    EXPECT_FALSE(SRShortcut::shortcutWithKeyEquivalent("⌘xy"));

    auto command = SRShortcut::shortcutWithKeyEquivalent("⌘");
    ASSERT_TRUE(command);
    EXPECT_EQ(command->keyCode(), SRKeyCodeNone);
    EXPECT_EQ(command->modifierFlags(), SRCommandFlag);

    auto commandShiftK = SRShortcut::shortcutWithKeyEquivalent("⇧⌘K");
    ASSERT_TRUE(commandShiftK);
    EXPECT_EQ(commandShiftK->keyCode(), 40);
    EXPECT_EQ(commandShiftK->modifierFlags(), commandShift);
    EXPECT_EQ(commandShiftK->characters(), "K");
    EXPECT_EQ(SRShortcut::shortcutWithKeyEquivalent("F5")->keyCode(), 96);
}

TEST_F(ShortcutTest, DictionariesRoundTripAndBadKeyCodesGiveModifiersAlone) {
    const SRDictionary textKeyCode = {{"keyCode", std::string("0")},
                                      {"modifierFlags", SRNumber(SRCommandFlag)}};
    auto shortcut = SRShortcut::shortcutWithDictionary(textKeyCode);
    ASSERT_TRUE(shortcut);
    EXPECT_EQ(shortcut->keyCode(), SRKeyCodeNone);
    EXPECT_EQ(shortcut->modifierFlags(), SRCommandFlag);
    EXPECT_FALSE(shortcut->isEqualToDictionary(textKeyCode));

    const SRDictionary noKeyCode = {{"modifierFlags", SRNumber(SRCommandFlag | 0x800000)}};
    EXPECT_TRUE(shortcut->isEqualToDictionary(noKeyCode));
    EXPECT_FALSE(SRShortcut::shortcutWithCode(0, SRCommandFlag)->isEqualToDictionary(noKeyCode));

    auto nulls = SRShortcut::shortcutWithDictionary(
        {{"keyCode", SRNumber(0)}, {"modifierFlags", SRNull{}}, {"characters", SRNull{}}});
    EXPECT_EQ(nulls->modifierFlags(), 0u);
    EXPECT_EQ(nulls->characters(), "a");

    auto commandShiftK = SRShortcut::shortcutWithCode(40, commandShift, "K", "k");
    const auto dictionary = commandShiftK->dictionaryRepresentation();
    EXPECT_EQ(dictionary.size(), 4u);
    EXPECT_EQ(SRShortcut::shortcutWithDictionary(dictionary)->characters(), "K");
    EXPECT_EQ((*commandShiftK)["charactersIgnoringModifiers"], SRDictionaryValue(std::string("k")));
    EXPECT_EQ((*commandShiftK)["keycode"], std::nullopt);
    EXPECT_EQ(SRShortcut::shortcutWithCode(SRKeyCodeNone, 0)->dictionaryRepresentation().size(),
              2u);
}

TEST_F(ShortcutTest, MenuKeyEquivalentsMatchTheirShortcut) {
    auto commandA = SRShortcut::shortcutWithCode(0, SRCommandFlag);
    EXPECT_TRUE(
        commandA->isEqualToKeyEquivalent("a", SRCommandFlag | platform::modifier::function));
    EXPECT_FALSE(commandA->isEqualToKeyEquivalent("A", SRCommandFlag));
    EXPECT_FALSE(commandA->isEqualToKeyEquivalent("", SRCommandFlag));

    // A capital carries Shift.
    auto commandShiftA = SRShortcut::shortcutWithCode(0, commandShift);
    EXPECT_TRUE(commandShiftA->isEqualToKeyEquivalent("A", SRCommandFlag));
    EXPECT_TRUE(commandShiftA->isEqualToKeyEquivalent("a", commandShift));
    // So does an Option character carry Option.
    EXPECT_TRUE(SRShortcut::shortcutWithCode(0, SRCommandFlag | SROptionFlag)
                    ->isEqualToKeyEquivalent("å", SRCommandFlag));

    auto backTab = SRShortcut::shortcutWithCode(48, SRShiftFlag);
    EXPECT_TRUE(backTab->isEqualToKeyEquivalent("\x19", SRShiftFlag));
    EXPECT_TRUE(backTab->isEqualToKeyEquivalent("\t", SRShiftFlag));

    EXPECT_FALSE(SRShortcut::shortcutWithCode(SRKeyCodeNone, SRCommandFlag)
                     ->isEqualToKeyEquivalent("a", SRCommandFlag));
}

TEST_F(ShortcutTest, ReadableTextsAndDescription) {
    auto everything = SRShortcut::shortcutWithCode(0, SRCocoaModifierFlagsMask);
    EXPECT_EQ(everything->readableStringRepresentation(true), "Command-Option-Control-Shift-A");
    EXPECT_EQ(SRShortcut::shortcutWithCode(49, SRControlFlag)->readableStringRepresentation(false),
              "Control-Space");
    EXPECT_EQ(SRShortcut::shortcutWithCode(200, SRCommandFlag)->readableStringRepresentation(true),
              "Command-<200>");

    EXPECT_EQ(SRShortcut::shortcutWithCode(40, commandShift)->description(), "⇧⌘K");
    EXPECT_EQ(SRShortcut::shortcutWithCode(SRKeyCodeNone, 0xE0000)->description(), "⌃⌥⇧");
}

TEST_F(ShortcutTest, ArchivesRoundTripAndADamagedArchiveGivesNothing) {
    auto shortcut = SRShortcut::shortcutWithCode(40, commandShift, "K", "k");
    const auto archive = shortcut->encode();
    auto back = SRShortcut::decode(archive);
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, *shortcut);
    EXPECT_EQ(back->charactersIgnoringModifiers(), "k");

    auto withoutTexts = *archive.dictionary();
    withoutTexts.erase("characters");
    auto computed = SRShortcut::decode(withoutTexts);
    ASSERT_TRUE(computed);
    EXPECT_EQ(computed->characters(), "K") << "computed anew from the key code";

    auto mistyped = *archive.dictionary();
    mistyped["keyCode"] = "40";
    EXPECT_FALSE(SRShortcut::decode(mistyped));
    auto textOfNumber = *archive.dictionary();
    textOfNumber["characters"] = 1;
    EXPECT_FALSE(SRShortcut::decode(textOfNumber));
    EXPECT_FALSE(SRShortcut::decode(platform::PropertyList("not an archive")));
}

}  // namespace
}  // namespace lirixkro
