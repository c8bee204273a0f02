#include <gtest/gtest.h>

#include <functional>

#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"
#include "shortcuts/SRKeyCodeASCIITranslator.h"
#include "shortcuts/SRKeyCodeTranslator.h"
#include "shortcuts/SRLiteralKeyCodeTransformer.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

using detail::SRKeyCodeASCIITranslator;
using detail::SRKeyCodeTranslator;
using detail::SRKeyCodeTranslatorCacheKey;
using platform::sim::layoutIdentifier::french;
using platform::sim::layoutIdentifier::german;
using platform::sim::layoutIdentifier::russian;
using platform::sim::layoutIdentifier::us;
using quillbox::LogLevel;

class KeyCodeTranslatorTest : public testing::ShortcutTest {
  protected:
    // A translator of its own, so that no other test's cache entries count.
    SRKeyCodeTranslator currentLayoutTranslator() {
        return SRKeyCodeTranslator(
            [this] { return layouts.copyCurrentKeyboardLayoutInputSource(); });
    }
};

// A layout that has no identifier.
class AnonymousSource final : public platform::InputSource {
  public:
    std::optional<std::string> identifier() const override { return std::nullopt; }
    platform::KeyTranslation translate(platform::KeyCode, std::uint32_t) const override {
        return {0, "x"};
    }
};

TEST(KeyCodeTranslatorCacheKey, MasksTheFlagsAndHashesAllFourFields) {
    const SRKeyCodeTranslatorCacheKey key("com.apple.keylayout.US", SRShiftFlag | 0x800000,
                                          SRCommandFlag | 0x10000, 5);
    EXPECT_EQ(key.implicitModifierFlags, SRShiftFlag);
    EXPECT_EQ(key.explicitModifierFlags, SRCommandFlag);
    const std::uint64_t identifierHash = std::hash<std::string>{}("com.apple.keylayout.US");
    EXPECT_EQ(key.hash(), (identifierHash << 24) | 0x10000 | (std::uint64_t{8} << 20) | 5);

    EXPECT_EQ(key,
              SRKeyCodeTranslatorCacheKey("com.apple.keylayout.US", SRShiftFlag, SRCommandFlag, 5));
    EXPECT_NE(key, SRKeyCodeTranslatorCacheKey("com.apple.keylayout.German", SRShiftFlag,
                                               SRCommandFlag, 5));
    EXPECT_NE(key, SRKeyCodeTranslatorCacheKey("com.apple.keylayout.US", SRShiftFlag, 0, 5));
}

TEST_F(KeyCodeTranslatorTest, ACacheHitNeverAsksTheLayout) {
    auto translator = currentLayoutTranslator();
    EXPECT_EQ(translator.translateKeyCode(0, SRShiftFlag, 0, true), "A");
    EXPECT_EQ(layouts.translationCount(), 1u);
    EXPECT_TRUE(log.contains(LogLevel::debug, "Translation cache miss"));

    log.clear();
    EXPECT_EQ(translator.translateKeyCode(0, SRShiftFlag | 0x800000, 0, true), "A");
    EXPECT_EQ(layouts.translationCount(), 1u);
    EXPECT_TRUE(log.contains(LogLevel::debug, "Translation cache hit"));

    // Explicit flags don't change the text but are cached apart.
    EXPECT_EQ(translator.translateKeyCode(0, SRShiftFlag, SRCommandFlag, true), "A");
    EXPECT_EQ(layouts.translationCount(), 2u);

    // Without the cache the layout is asked every time.
    translator.translateKeyCode(0, SRShiftFlag, 0, false);
    translator.translateKeyCode(0, SRShiftFlag, 0, false);
    EXPECT_EQ(layouts.translationCount(), 4u);
    EXPECT_EQ(translator.cachedTranslationCount(), 2u);
}

TEST_F(KeyCodeTranslatorTest, ALayoutSwitchMissesAndSwitchingBackHitsTheOldEntries) {
    int told = 0;
    auto subscription = layouts.observeLayoutChanges([&] { ++told; });
    auto translator = currentLayoutTranslator();

    EXPECT_EQ(translator.translateKeyCode(16, 0, 0, true), "y");
    ASSERT_TRUE(layouts.selectLayout(german));
    EXPECT_EQ(told, 0) << "observers are told on the main loop";
    loop.runUntilIdle();
    EXPECT_EQ(told, 1);

    EXPECT_EQ(translator.translateKeyCode(16, 0, 0, true), "z");
    EXPECT_EQ(layouts.translationCount(), 2u);

    layouts.selectLayout(us);
    EXPECT_EQ(translator.translateKeyCode(16, 0, 0, true), "y");
    EXPECT_EQ(layouts.translationCount(), 2u);
}

TEST_F(KeyCodeTranslatorTest, TheSharedTransformersFollowTheCurrentLayout) {
    auto literal = SRLiteralKeyCodeTransformer::sharedTransformer();
    EXPECT_EQ(literal->transformedValue(SRNumber(6)), "Z");
    layouts.selectLayout(german);
    EXPECT_EQ(literal->transformedValue(SRNumber(6)), "Y");
    EXPECT_EQ(literal->transformedValue(SRNumber(27)), "ß");
    EXPECT_EQ(
        literal->transformedValue(SRNumber(37), SROptionFlag, 0, SRLayoutDirection::leftToRight),
        "@");
    layouts.selectLayout(french);
    EXPECT_EQ(literal->transformedValue(SRNumber(12)), "A");
    EXPECT_EQ(literal->transformedValue(SRNumber(19)), "É");
    layouts.selectLayout(russian);
    EXPECT_EQ(literal->transformedValue(SRNumber(12)), "Й");
    // The ASCII-capable layout of a Russian keyboard is US.
    EXPECT_EQ(SRASCIILiteralKeyCodeTransformer::sharedTransformer()->transformedValue(SRNumber(12)),
              "Q");
}

TEST_F(KeyCodeTranslatorTest, TheReverseMapLetsLaterKeysWinAndIsRebuiltPerLayout) {
    auto& ascii = SRKeyCodeASCIITranslator::shared();
    EXPECT_EQ(ascii.keyCodeForTranslation("1"), 83) << "the keypad's 1 comes later";
    EXPECT_EQ(ascii.keyCodeForTranslation("="), 81);
    EXPECT_EQ(ascii.keyCodeForTranslation("a"), 0);
    EXPECT_EQ(ascii.keyCodeForTranslation("ü"), std::nullopt);

    layouts.selectLayout(french);
    log.clear();
    EXPECT_EQ(ascii.keyCodeForTranslation("a"), 12);
    EXPECT_EQ(ascii.keyCodeForTranslation("ù"), 39);
    EXPECT_EQ(log.records().front().text, "Updating translation -> key code mapping");
    EXPECT_EQ(log.records().front().level, LogLevel::debug);

    log.clear();
    layouts.resetTranslationCount();
    EXPECT_EQ(ascii.keyCodeForTranslation("q"), 0);
    EXPECT_FALSE(log.contains("Updating translation -> key code mapping"));
    EXPECT_EQ(layouts.translationCount(), 0u);

    layouts.selectLayout(russian);
    EXPECT_EQ(ascii.keyCodeForTranslation("q"), 12) << "Russian reads back through US";
}

TEST_F(KeyCodeTranslatorTest, FailuresAreQuietWithTheirLogLines) {
    auto translator = currentLayoutTranslator();
    EXPECT_EQ(translator.translateKeyCode(SRKeyCodeNone, 0, 0, true), "");
    EXPECT_EQ(layouts.translationCount(), 0u);

    EXPECT_EQ(translator.translateKeyCode(200, SRShiftFlag, 0, true), std::nullopt);
    EXPECT_TRUE(log.contains(
        LogLevel::error, "#Error Unable to translate keyCode 200 and modifierFlags 131072: -50"));
    EXPECT_EQ(translator.translateKeyCode(102, 0, 0, true), std::nullopt);
    EXPECT_TRUE(log.contains(LogLevel::debug,
                             "#Error No translation exists for keyCode 102 and modifierFlags 0"));

    layouts.setSourcesUnavailable(true);
    log.clear();
    EXPECT_EQ(translator.translateKeyCode(0, 0, 0, true), std::nullopt);
    EXPECT_EQ(SRKeyCodeASCIITranslator::shared().keyCodeForTranslation("a"), std::nullopt);
    EXPECT_EQ(log.texts(),
              std::vector<std::string>(2, "#Critical Failed to create an input source"));
    EXPECT_EQ(log.records().front().level, LogLevel::fault);

    // A source without an identifier is translated past the cache.
    log.clear();
    SRKeyCodeASCIITranslator anonymous(std::make_shared<AnonymousSource>());
    EXPECT_EQ(anonymous.translateKeyCode(0, 0, 0, true), "x");
    EXPECT_TRUE(log.contains("#Error Input source misses an ID"));
    EXPECT_EQ(anonymous.cachedTranslationCount(), 0u);
    log.clear();
    EXPECT_EQ(anonymous.keyCodeForTranslation("x"), std::nullopt);
    EXPECT_EQ(log.texts(), std::vector<std::string>{"#Error Input source misses an ID"});
}

TEST_F(KeyCodeTranslatorTest, TranslatorsMayBeSharedBetweenThreads) {
    auto translator = currentLayoutTranslator();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (SRKeyCode keyCode = 0; keyCode < 50; ++keyCode) {
                translator.translateKeyCode(keyCode, 0, 0, true);
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    // Each miss is filled once, under the lock.
    EXPECT_EQ(layouts.translationCount(), 50u);
}

}  // namespace
}  // namespace lirixkro
