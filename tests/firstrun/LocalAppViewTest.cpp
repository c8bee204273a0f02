// How one application bundle is named in a row: its translated name, else
// its name, else its identifier, else its file name.
#include <gtest/gtest.h>

#include "app/SpineTestSupport.h"
#include "firstrun/LocalAppView.h"

namespace {

using Dictionary = platform::PropertyList::Dictionary;

class TranslatedBundle final : public platform::Bundle {
  public:
    TranslatedBundle(std::optional<Dictionary> translated, std::optional<Dictionary> information,
                     std::optional<std::string> identifier, std::filesystem::path path)
        : translated_(std::move(translated)),
          information_(std::move(information)),
          identifier_(std::move(identifier)),
          path_(std::move(path)) {}

    std::optional<std::string> bundleIdentifier() const override { return identifier_; }
    std::filesystem::path bundlePath() const override { return path_; }
    const Dictionary* infoDictionary() const override {
        return information_ ? &*information_ : nullptr;
    }
    const Dictionary* localizedInfoDictionary() const override {
        return translated_ ? &*translated_ : nullptr;
    }

  private:
    std::optional<Dictionary> translated_;
    std::optional<Dictionary> information_;
    std::optional<std::string> identifier_;
    std::filesystem::path path_;
};

class LocalAppViewTest : public ::testing::Test, protected spine::DesktopFixture {};

}  // namespace

TEST_F(LocalAppViewTest, TheNameFallsBackFromTranslatedToPlainToIdentifierToFileName) {
    const Dictionary named{{"CFBundleName", "Files"}};
    const Dictionary translated{{"CFBundleName", "Dateien"}};
    const Dictionary unnamed{{"CFBundleName", 7}};
    const std::filesystem::path path = "/usr/share/applications/org.example.Files.desktop";
    using tarnwick::LocalAppView;
    EXPECT_EQ(
        LocalAppView::fromBundle(TranslatedBundle(translated, named, "org.example", path)).appName,
        "Dateien");
    EXPECT_EQ(LocalAppView::fromBundle(TranslatedBundle(Dictionary{}, named, "org.example", path))
                  .appName,
              "Files");
    EXPECT_EQ(
        LocalAppView::fromBundle(TranslatedBundle(unnamed, unnamed, "org.example", path)).appName,
        "org.example");
    EXPECT_EQ(LocalAppView::fromBundle(TranslatedBundle({}, {}, {}, path)).appName,
              "org.example.Files");
    EXPECT_EQ(
        LocalAppView::fromBundle(TranslatedBundle({}, {}, {}, "/Applications/Mail.app/")).appName,
        "Mail");
    EXPECT_EQ(LocalAppView::fromBundle(TranslatedBundle({}, named, {}, path)).icon,
              platform::Image::file(path));
}
