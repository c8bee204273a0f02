#include <gtest/gtest.h>

#include "platform/HotKeys.h"
#include "shortcuts/FakeApplication.h"
#include "shortcuts/SRMenuItemPath.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRShortcutValidator.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

using platform::Menu;
using platform::MenuItem;
namespace carbon = platform::carbonModifier;

constexpr SRKeyCode keyA = 0;
constexpr SRKeyCode keyF = 3;
constexpr SRKeyCode key3 = 20;

// A delegate that offers what a test sets and nothing else.
class ScriptedDelegate final : public SRShortcutValidatorDelegate {
  public:
    std::optional<bool> shortcutValidatorIsShortcutValid(SRShortcutValidator&, const SRShortcut&,
                                                         std::string& reason) override {
        if (valid)
            reason = givenReason;
        return valid;
    }
    std::optional<bool> shortcutValidatorIsKeyCodeAndFlagsTaken(SRShortcutValidator&, SRKeyCode,
                                                                SRModifierFlags,
                                                                std::string& reason) override {
        if (taken)
            reason = givenReason;
        return taken;
    }
    std::optional<bool> shortcutValidatorShouldCheckSystemShortcuts(SRShortcutValidator&) override {
        return checkSystem;
    }
    std::optional<bool> shortcutValidatorShouldCheckMenu(SRShortcutValidator&) override {
        return checkMenu;
    }
    std::optional<bool> shortcutValidatorShouldUseASCIIStringForKeyCodes(
        SRShortcutValidator&) override {
        return ascii;
    }

    std::optional<bool> valid, taken, checkSystem, checkMenu, ascii;
    std::string givenReason;
};

class ShortcutValidatorTest : public testing::ShortcutTest {
  protected:
    ShortcutValidatorTest() {
        auto editMenu = Menu::make("Edit");
        find = MenuItem::make("Find", "f");
        editMenu->addItem(find);
        auto capital = MenuItem::make("Find Next", "G");
        editMenu->addItem(capital);
        auto edit = MenuItem::make("Edit");
        edit->setSubmenu(editMenu);
        mainMenu->addItem(MenuItem::make("About", ""));
        mainMenu->addItem(edit);
        hotKeys.setSymbolicHotKeys({
            {true, key3, carbon::command | carbon::shift},
            {false, keyA, carbon::control},
        });
    }

    void installApplication() {
        application.setMainMenu(mainMenu);
        auto services = this->services();
        services.application = &application;
        withApplication.emplace(services);
    }

    static SRShortcutRef shortcut(SRKeyCode keyCode, SRModifierFlags flags) {
        return SRShortcut::shortcutWithCode(keyCode, flags);
    }

    std::shared_ptr<Menu> mainMenu = Menu::make();
    std::shared_ptr<MenuItem> find;
    testing::FakeApplication application;
    std::optional<platform::ScopedInstall> withApplication;
    std::shared_ptr<ScriptedDelegate> delegate = std::make_shared<ScriptedDelegate>();
    SRShortcutValidator validator{delegate};
    SRValidationError error;
};

TEST_F(ShortcutValidatorTest, TheDelegateIsAskedFirstAndItsReasonIsWorded) {
    delegate->taken = true;
    EXPECT_FALSE(validator.validateShortcut(*shortcut(keyA, SRCommandFlag), &error));
    EXPECT_EQ(error.domain, "NSCocoaErrorDomain");
    EXPECT_EQ(error.code, 0);
    EXPECT_EQ(error.localizedDescription, "The \"Command-A\" shortcut can't be used!");
    EXPECT_EQ(error.localizedFailureReason, "The \"Command-A\" shortcut is already in use.");

    // The newer operation wins over the older one.
    delegate->valid = false;
    delegate->givenReason = "it opens the pod bay doors";
    delegate->ascii = true;
    EXPECT_FALSE(validator.validateShortcut(*shortcut(49, SRCommandFlag), &error));
    EXPECT_EQ(error.localizedFailureReason,
              "The \"Command-Space\" shortcut can't be used because it opens the pod bay doors.");

    delegate->givenReason = "";
    EXPECT_FALSE(validator.validateShortcutAgainstDelegate(*shortcut(keyA, 0), &error));
    EXPECT_EQ(error.localizedFailureReason, "The \"A\" shortcut is already in use.");

    delegate->valid = true;
    EXPECT_TRUE(validator.validateShortcutAgainstDelegate(*shortcut(keyA, 0), nullptr));
}

TEST_F(ShortcutValidatorTest, EnabledSystemShortcutsWithExactlyTheSameFlagsRefuse) {
    EXPECT_FALSE(validator.validateShortcut(*shortcut(key3, SRCommandFlag | SRShiftFlag), &error));
    EXPECT_EQ(error.localizedFailureReason,
              "The \"Command-Shift-3\" shortcut can't be used because it's already used by a "
              "system-wide keyboard shortcut. If you really want to use this shortcut, most "
              "shortcuts can be changed in the Keyboard panel in System Preferences.");

    SRValidationError untouched;
    EXPECT_TRUE(validator.validateShortcut(*shortcut(keyA, SRControlFlag), &untouched))
        << "disabled";
    EXPECT_TRUE(untouched.localizedDescription.empty());
    EXPECT_TRUE(validator.validateShortcut(*shortcut(key3, SRCommandFlag), nullptr))
        << "fewer flags";
    EXPECT_TRUE(validator.validateShortcut(
        *shortcut(key3, SRCommandFlag | SRShiftFlag | SROptionFlag), nullptr))
        << "more flags";

    delegate->checkSystem = false;
    EXPECT_TRUE(validator.validateShortcut(*shortcut(key3, SRCommandFlag | SRShiftFlag), nullptr));
}

TEST_F(ShortcutValidatorTest, UnreadableSystemShortcutsRefuseWithoutAnError) {
    hotKeys.setCopySymbolicHotKeysStatus(-1);
    auto controlA = shortcut(keyA, SRControlFlag);
    log.clear();
    EXPECT_FALSE(validator.validateShortcut(*controlA, &error));
    EXPECT_TRUE(error.localizedDescription.empty());
    const auto records = log.records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].text, "#Error Unable to read System Shortcuts: -1");
    EXPECT_EQ(records[0].activity,
              "-[SRShortcutValidator validateShortcutAgainstSystemShortcuts:error:]");
}

TEST_F(ShortcutValidatorTest, TheMainMenuRefusesItsKeyEquivalentsNamingTheItem) {
    installApplication();
    EXPECT_FALSE(validator.validateShortcut(*shortcut(keyF, SRCommandFlag), &error));
    EXPECT_EQ(error.localizedFailureReason,
              "The \"Command-F\" shortcut can't be used because it's already used by the "
              "\"Edit → Find\" menu item.");

    // A capital equivalent means Shift.
    EXPECT_FALSE(validator.validateShortcut(*shortcut(5, SRCommandFlag | SRShiftFlag), nullptr));
    EXPECT_TRUE(validator.validateShortcut(*shortcut(5, SRCommandFlag), nullptr));

    delegate->checkMenu = false;
    EXPECT_TRUE(validator.validateShortcut(*shortcut(keyF, SRCommandFlag), nullptr));

    EXPECT_EQ(SR_path(*mainMenu->itemArray()[1]), "Edit");
    EXPECT_EQ(SR_path(*MenuItem::make("")), " → ") << "too short to lose its separator";
}

}  // namespace
}  // namespace lirixkro
