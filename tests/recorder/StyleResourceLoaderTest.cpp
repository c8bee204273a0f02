#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "StyleComponentsNames.h"
#include "recorder/SRRecorderControlStyleResourceLoader.h"
#include "shortcuts/SRExceptions.h"
#include "shortcuts/SRResources.h"
#include "support/Log.h"

namespace lirixkro {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using namespace testing::styles;

json textAttributes() {
    return {{"fontName", ".AppleSystemUIFont"},
            {"fontSize", 13},
            {"fontColorCatalogName", "System"},
            {"fontColorName", "controlTextColor"}};
}

json validInfo() {
    json insets = {{"top", 0}, {"left", 0}, {"bottom", 1}, {"right", 0}};
    return {{"supportedComponents", json::array({{{"appearance", 1}, {"layoutDirection", 1}},
                                                 {{"appearance", 3}},
                                                 {{"appearance", 1}, {"accessibility", 2}},
                                                 json::object()})},
            {"metrics",
             {{"minSize", {{"width", 60}, {"height", 22}}},
              {"labelToCancel", 4},
              {"cancelToClear", 5},
              {"buttonToAlignment", 5},
              {"baselineFromTop", 15},
              {"alignmentToLabel", 8},
              {"labelToAlignment", 8},
              {"baselineLayoutOffsetFromBottom", 7},
              {"baselineDrawingOffsetFromBottom", 7},
              {"focusRingCornerRadius", {{"width", 5}, {"height", 5}}},
              {"focusRingInsets", insets},
              {"alignmentInsets", insets},
              {"normalLabelAttributes", textAttributes()},
              {"recordingLabelAttributes", textAttributes()},
              {"disabledLabelAttributes", textAttributes()}}}};
}

// A resource folder of its own for each test.
class StyleResourceLoader : public ::testing::Test {
  protected:
    StyleResourceLoader() {
        directory = fs::temp_directory_path() /
                    ("lirixkro-style-" + std::to_string(::getpid()) + "-" +
                     ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(directory);
        fs::create_directories(directory);
    }
    ~StyleResourceLoader() override { fs::remove_all(directory); }

    void writeInfo(const std::string& identifier, const std::string& text) {
        std::ofstream(directory / (identifier + "-info.json")) << text;
    }
    // The header of a PNG of the size: all the loader reads of it.
    void writePNG(const std::string& name, std::uint32_t width, std::uint32_t height) {
        std::string bytes = "\x89PNG\r\n\x1A\n";
        bytes += std::string("\0\0\0\x0D", 4) + "IHDR";
        for (std::uint32_t value : {width, height}) {
            for (int shift = 24; shift >= 0; shift -= 8)
                bytes += static_cast<char>((value >> shift) & 0xFF);
        }
        std::ofstream(directory / (name + ".png"), std::ios::binary) << bytes;
    }
    // The text of the error that loading this description raises.
    std::string errorFor(const json& info) {
        writeInfo("sr-test", info.dump());
        SRRecorderControlStyleResourceLoader loader(directory);
        try {
            loader.infoForStyle("sr-test");
        } catch (const SRInternalInconsistencyException& error) {
            return error.what();
        }
        return "no error";
    }

    fs::path directory;
    quillbox::CapturedLog log;
};

TEST_F(StyleResourceLoader, RefusesADescriptionWithThePathOfTheFault) {
    EXPECT_EQ(errorFor(validInfo()), "no error");

    auto info = validInfo();
    info["metrics"]["minSize"]["depth"] = 1;
    EXPECT_EQ(errorFor(info), "sr-test-info.metrics.minSize: unexpected keys");
    info = validInfo();
    info["metrics"]["minSize"]["width"] = -1;
    EXPECT_EQ(errorFor(info), "sr-test-info.metrics.minSize.width: value < 0");
    info = validInfo();
    info["metrics"].erase("cancelToClear");
    EXPECT_EQ(errorFor(info), "sr-test-info.metrics: missing cancelToClear");
    info = validInfo();
    info["metrics"]["labelToCancel"] = "four";
    EXPECT_EQ(errorFor(info), "sr-test-info.metrics.labelToCancel: expected number but got string");
    info = validInfo();
    info["supportedComponents"][1]["appearance"] = 5;
    EXPECT_EQ(errorFor(info), "sr-test-info.supportedComponents.[1].appearance: value >= 5");
    info = validInfo();
    info["supportedComponents"][0]["layoutDirection"] = -1;
    EXPECT_EQ(errorFor(info), "sr-test-info.supportedComponents.[0].layoutDirection: value < 0");
    info = validInfo();
    info["supportedComponents"][2]["accessibility"] = 4;
    EXPECT_EQ(errorFor(info),
              "sr-test-info.supportedComponents.[2].accessibility: value must be with mask 3");
    info = validInfo();
    info["supportedComponents"][3]["contrast"] = 1;
    EXPECT_EQ(errorFor(info), "sr-test-info.supportedComponents.[3]: unexpected keys");
    info = validInfo();
    info["metrics"]["normalLabelAttributes"].erase("fontColorName");
    EXPECT_EQ(errorFor(info), "sr-test-info.metrics.normalLabelAttributes: missing fontColorName");
    info = validInfo();
    info["supportedComponents"] = json::object();
    EXPECT_EQ(errorFor(info), "sr-test-info.supportedComponents: expected array but got object");
    EXPECT_EQ(errorFor(json::array()), "sr-test-info: expected object but got array");
}

TEST_F(StyleResourceLoader, AMissingOrBrokenDescriptionRaises) {
    SRRecorderControlStyleResourceLoader loader(directory);
    try {
        loader.infoForStyle("sr-absent");
        FAIL();
    } catch (const SRInternalInconsistencyException& error) {
        EXPECT_STREQ(error.what(), "Missing sr-absent-info");
    }
    writeInfo("sr-broken", "{\"metrics\": ");
    try {
        loader.infoForStyle("sr-broken");
        FAIL();
    } catch (const SRInternalInconsistencyException& error) {
        EXPECT_EQ(std::string(error.what()).rfind("sr-broken-info is an invalid JSON: ", 0), 0u)
            << error.what();
    }
}

TEST_F(StyleResourceLoader, ReadsTheMeasuresAndKeepsWhatItRead) {
    writeInfo("sr-test", validInfo().dump());
    SRRecorderControlStyleResourceLoader loader(directory);
    const auto info = loader.infoForStyle("sr-test");
    EXPECT_EQ(info->metrics.minSize, (platform::CGSize{60, 22}));
    EXPECT_EQ(info->metrics.alignmentInsets.bottom, 1);
    EXPECT_TRUE(info->metrics.normalLabelAttributes.isSystemFont);
    EXPECT_EQ(info->metrics.normalLabelAttributes.minimalDrawableWidth, 13);
    ASSERT_EQ(info->supportedComponents.size(), 4u);
    EXPECT_EQ(info->supportedComponents[2],
              C(A::aqua, X::highContrast, D::unspecified, T::unspecified));
    EXPECT_TRUE(log.contains("Info is not in cache"));

    fs::remove(directory / "sr-test-info.json");
    EXPECT_EQ(loader.infoForStyle("sr-test"), info);
    EXPECT_TRUE(log.contains("Info is in cache"));
}

TEST_F(StyleResourceLoader, PrefixesGoFromTheBestMatchToTheEntryThatMatchesNothing) {
    writeInfo("sr-test", validInfo().dump());
    SRRecorderControlStyleResourceLoader loader(directory);
    EXPECT_EQ(
        loader.lookupPrefixesForStyle("sr-test", C(A::aqua, X::none, D::leftToRight, T::blue)),
        (std::vector<std::string>{"sr-test-aqua-ltr", "sr-test-aqua-acc", "sr-test-darkaqua",
                                  "sr-test"}));
    EXPECT_EQ(loader.lookupPrefixesForStyle("sr-test",
                                            C(A::aqua, X::highContrast, D::leftToRight, T::blue)),
              (std::vector<std::string>{"sr-test-aqua-acc", "sr-test-aqua-ltr", "sr-test-darkaqua",
                                        "sr-test"}));
    EXPECT_EQ(
        loader.lookupPrefixesForStyle("sr-test", C(A::darkAqua, X::none, D::leftToRight, T::blue))
            .front(),
        "sr-test-darkaqua");
    EXPECT_FALSE(log.contains("Lookup prefixes are in cache"));
    loader.lookupPrefixesForStyle("sr-test", C(A::darkAqua, X::none, D::leftToRight, T::blue));
    EXPECT_TRUE(log.contains("Lookup prefixes are in cache"));
}

TEST_F(StyleResourceLoader, AnImageComesFromTheFirstPrefixThatHasIt) {
    writeInfo("sr-test", validInfo().dump());
    writePNG("sr-test-darkaqua-bezel-normal-left", 7, 22);
    writePNG("sr-test-bezel-normal-left", 6, 22);
    writePNG("sr-test-bezel-pressed-left", 6, 22);
    writePNG("sr-test-bezel-pressed-left@2x", 12, 44);
    writePNG("sr-test-aqua-acc-button-cancel-normal@2x", 28, 28);
    SRRecorderControlStyleResourceLoader loader(directory);
    const C light(A::aqua, X::none, D::leftToRight, T::blue);

    const auto bezel = loader.imageNamed("bezel-normal-left", "sr-test", light);
    EXPECT_EQ(bezel.name, "sr-test-darkaqua-bezel-normal-left") << "dark ranks before nothing";
    const auto fallback = loader.imageNamed("bezel-pressed-left", "sr-test", light);
    EXPECT_EQ(fallback.name, "sr-test-bezel-pressed-left") << "the entry that matches nothing";
    EXPECT_EQ(fallback.size, (platform::CGSize{6, 22}));
    EXPECT_FALSE(fallback.path2x.empty());

    const auto onlyDouble = loader.imageNamed("button-cancel-normal", "sr-test", light);
    EXPECT_EQ(onlyDouble.size, (platform::CGSize{14, 14})) << "a 2x file alone, halved";
    EXPECT_TRUE(onlyDouble.path.empty());

    try {
        loader.imageNamed("button-clear-normal", "sr-test", light);
        FAIL();
    } catch (const SRInternalInconsistencyException& error) {
        EXPECT_STREQ(error.what(), "Missing image named button-clear-normal");
    }
    log.clear();
    fs::remove_all(directory);
    EXPECT_EQ(loader.imageNamed("bezel-normal-left", "sr-test", light), bezel);
    EXPECT_TRUE(log.contains("Image name is in cache"));
}

// Every image of both styles is there, for every look they describe.
TEST(ShippedStyles, HaveEveryImageForEveryLookAtBothScales) {
    SRRecorderControlStyleResourceLoader loader(SRResourceDirectory());
    const char* names[] = {
        "bezel-normal-left",    "bezel-normal-center",    "bezel-normal-right",
        "bezel-pressed-left",   "bezel-pressed-center",   "bezel-pressed-right",
        "bezel-recording-left", "bezel-recording-center", "bezel-recording-right",
        "bezel-disabled-left",  "bezel-disabled-center",  "bezel-disabled-right",
        "button-cancel-normal", "button-cancel-pressed",  "button-clear-normal",
        "button-clear-pressed"};
    for (const char* identifier : {"sr-mojave", "sr-yosemite"}) {
        for (A appearance : {A::aqua, A::darkAqua, A::vibrantLight, A::vibrantDark}) {
            for (X contrast : {X::none, X::highContrast}) {
                for (D direction : {D::leftToRight, D::rightToLeft}) {
                    const C look(appearance, contrast, direction, T::blue);
                    for (const char* name : names) {
                        SCOPED_TRACE(std::string(identifier) + look.stringRepresentation() + name);
                        const auto image = loader.imageNamed(name, identifier, look);
                        ASSERT_FALSE(image.path.empty());
                        ASSERT_FALSE(image.path2x.empty());
                        EXPECT_EQ(SRPNGPixelSize(image.path2x)->width, 2 * image.size.width);
                        const bool dark = appearance == A::darkAqua || appearance == A::vibrantDark;
                        EXPECT_EQ(image.name.find("darkaqua") != std::string::npos, dark);
                        EXPECT_EQ(image.name.find("-acc") != std::string::npos,
                                  contrast == X::highContrast);
                    }
                    const auto clear = loader.imageNamed("button-clear-normal", identifier, look);
                    EXPECT_NE(clear.name.find(direction == D::rightToLeft ? "-rtl-" : "-ltr-"),
                              std::string::npos);
                }
            }
        }
    }
}

}  // namespace
}  // namespace lirixkro
