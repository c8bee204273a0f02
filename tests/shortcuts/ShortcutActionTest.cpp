#include <gtest/gtest.h>

#include "platform/PropertyListCodec.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRShortcutAction.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

using Method = SRShortcutActionTarget::Method;

using testing::keyK;

// A target that takes whole actions when told to, and may veto them.
class ProtocolTarget final : public SRShortcutActionTarget {
  public:
    bool respondsToPerformShortcutAction() const override { return takesActions; }
    bool performShortcutAction(SRShortcutAction&) override {
        ++performed;
        return answer;
    }
    std::optional<bool> validateUserInterfaceItem(const SRShortcutAction&) override {
        return valid;
    }
    bool takesActions = true;
    bool answer = true;
    std::optional<bool> valid;
    int performed = 0;
};

class ShortcutAction : public testing::ShortcutTest {
  protected:
    SRShortcutRef commandK = SRShortcut::shortcutWithCode(keyK, SRCommandFlag);
};

TEST_F(ShortcutAction, AHandlerAndATargetExcludeEachOther) {
    auto target = std::make_shared<ProtocolTarget>();
    auto action =
        SRShortcutAction::shortcutActionWithShortcut(commandK, [](auto&) { return true; });
    std::vector<std::string> changes;
    auto observation =
        action->observe([&](std::string_view field) { changes.emplace_back(field); });

    action->setTarget(target);
    EXPECT_FALSE(action->actionHandler());
    EXPECT_EQ(action->target(), target);
    action->setActionHandler([](auto&) { return false; });
    EXPECT_EQ(action->target(), SRShortcutActionTarget::application())
        << "no target of its own: the application";
    EXPECT_EQ(changes,
              (std::vector<std::string>{"target", "actionHandler", "actionHandler", "target"}));
    EXPECT_TRUE(action->isEnabled());
}

TEST_F(ShortcutAction, PerformsThroughTheHandlerTheSelectorOrTheProtocolInThatOrder) {
    auto target = std::make_shared<ProtocolTarget>();
    int withSender = 0;
    target->setMethod("copy:", Method::withSender([&](SRShortcutAction& sender) {
                          withSender += static_cast<int>(sender.tag());
                          return false;
                      }));
    target->setMethod("paste:", Method::withSenderReturningNothing([](SRShortcutAction&) {}));
    target->setMethod("odd:with:", Method::withArgumentCount(4));

    auto action = SRShortcutAction::shortcutActionWithShortcut(commandK, target, "copy:", 7);
    EXPECT_FALSE(action->performActionOnTarget()) << "the method's own Boolean";
    EXPECT_EQ(withSender, 7);
    EXPECT_TRUE(log.contains(quillbox::LogLevel::debug, "Using action"));
    action->setAction("paste:");
    EXPECT_TRUE(action->performActionOnTarget()) << "no Boolean: performed";
    action->setAction("odd:with:");
    EXPECT_FALSE(action->performActionOnTarget()) << "a method of another shape isn't called";

    action->setAction("unknown:");
    EXPECT_TRUE(action->performActionOnTarget());
    EXPECT_EQ(target->performed, 1) << "the protocol, as the selector isn't answered";
    EXPECT_TRUE(log.contains("Using protocol"));
    target->valid = false;
    EXPECT_FALSE(action->performActionOnTarget());
    EXPECT_TRUE(log.contains("Not performed: target ignored action"));
    target->takesActions = false;
    EXPECT_FALSE(action->performActionOnTarget());
    EXPECT_TRUE(log.contains("Not performed: target cannot respond to action"));

    action->setEnabled(false);
    log.clear();
    EXPECT_FALSE(action->performActionOnTarget());
    ASSERT_EQ(log.records().size(), 1u);
    EXPECT_EQ(log.records()[0].text, "Not performed: disabled");
    EXPECT_EQ(log.records()[0].activity, "-[SRShortcutAction performActionOnTarget:]");
}

TEST_F(ShortcutAction, AGivenTargetWinsAndTheApplicationLacksUnknownSelectors) {
    auto own = std::make_shared<ProtocolTarget>();
    auto given = std::make_shared<ProtocolTarget>();
    auto action = SRShortcutAction::shortcutActionWithShortcut(commandK, own, std::nullopt, 0);
    EXPECT_TRUE(action->performActionOnTarget(given));
    EXPECT_EQ(given->performed, 1);
    EXPECT_EQ(own->performed, 0);

    auto orphan = SRShortcutAction::shortcutActionWithShortcut(
        commandK, std::weak_ptr<SRShortcutActionTarget>(), "frobnicate:", 0);
    EXPECT_FALSE(orphan->performActionOnTarget());

    auto handled = SRShortcutAction::shortcutActionWithShortcut(
        commandK, [](SRShortcutAction& self) { return self.tag() == 0; });
    handled->setAction("ignored:");
    EXPECT_TRUE(handled->performActionOnTarget(given)) << "the handler's answer, target unasked";
    EXPECT_EQ(given->performed, 1);
}

TEST_F(ShortcutAction, FollowsAShortcutHeldElsewhereInEachOfItsForms) {
    auto store = std::make_shared<SRKeyValueStore>();
    store->setValueForKeyPath(commandK, "shortcut");
    auto action =
        SRShortcutAction::shortcutActionWithKeyPath("shortcut", store, [](auto&) { return true; });
    ASSERT_TRUE(action->shortcut()) << "the value now is taken at once";
    EXPECT_EQ(action->shortcut()->keyCode(), keyK);

    int shortcutChanges = 0;
    auto observation =
        action->observe([&](std::string_view field) { shortcutChanges += field == "shortcut"; });
    store->setValueForKeyPath(
        SRDictionary{{"keyCode", SRNumber(0)}, {"modifierFlags", SRNumber(SRControlFlag)}},
        "shortcut");
    EXPECT_EQ(action->shortcut()->keyCode(), 0);
    const auto archive = platform::PropertyListCodec::encodeBinary(
        SRShortcut::shortcutWithCode(1, SROptionFlag)->encode());
    store->setValueForKeyPath(SRData{archive}, "shortcut");
    EXPECT_EQ(action->shortcut()->keyCode(), 1);
    store->setValueForKeyPath(SRShortcut::shortcutWithCode(1, SROptionFlag, "x", "x"), "shortcut");
    EXPECT_EQ(shortcutChanges, 2) << "an equal shortcut is not stored again";
    store->setValueForKeyPath(SRNull{}, "shortcut");
    EXPECT_EQ(action->shortcut(), nullptr);

    action->setShortcut(commandK);
    EXPECT_EQ(action->observedObject(), nullptr) << "a shortcut set directly ends the observing";
    EXPECT_EQ(store->observerCount("shortcut"), 0u);
    store->setValueForKeyPath(SRNull{}, "shortcut");
    EXPECT_EQ(action->shortcut()->keyCode(), keyK);
}

TEST_F(ShortcutAction, ObservingTheSameKeyPathAgainChangesNothing) {
    auto store = std::make_shared<SRKeyValueStore>();
    auto action =
        SRShortcutAction::shortcutActionWithKeyPath("a", store, [](auto&) { return true; });
    int changes = 0;
    auto observation = action->observe([&](std::string_view) { ++changes; });
    action->setObservedObject(store, "a");
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(store->observerCount("a"), 1u);
    action->setObservedObject(store, "b");
    EXPECT_EQ(store->observerCount("a"), 0u);
    EXPECT_EQ(store->observerCount("b"), 1u);
    EXPECT_EQ(action->observedKeyPath(), "b");
}

}  // namespace
}  // namespace lirixkro
