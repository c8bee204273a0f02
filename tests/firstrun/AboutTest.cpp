// The About window: read from the bundle, one window at a time, and a new
// reading after it closed. Its author line in both of its forms.
#include <gtest/gtest.h>

#include "app/RootCoordinator.h"
#include "app/SpineTestSupport.h"
#include "firstrun/AboutCoordinator.h"

using platform::sim::SimWindow;
using tarnwick::AboutCoordinator;
using tarnwick::AboutWindowView;
using tarnwick::RootCoordinator;

namespace {

class AboutTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    AboutTest() {
        RootCoordinator::ChildFactories factories;
        factories.about = [this](RootCoordinator& parent) {
            ++made;
            return AboutCoordinator::make(parent.shared_from_this(), parent.activationController());
        };
        root = RootCoordinator::make(std::move(factories));
    }

    AboutCoordinator& about() { return dynamic_cast<AboutCoordinator&>(*root->aboutCoordinator()); }
    std::shared_ptr<SimWindow> aboutWindow() {
        return std::static_pointer_cast<SimWindow>(about().rootController().window());
    }

    std::shared_ptr<RootCoordinator> root;
    int made = 0;
};

AboutWindowView viewBy(std::string developer, std::optional<std::string> link) {
    AboutWindowView view;
    view.appName = "Tarnwick";
    view.version = "1.4.0";
    view.build = "212";
    view.developerName = std::move(developer);
    view.developerNameLink = std::move(link);
    view.copyright = "Copyright © 2026 Harrowmere. All rights reserved.";
    return view;
}

}  // namespace

TEST_F(AboutTest, TheWindowShowsTheBundlesValuesAndASecondAboutRaisesTheSameWindow) {
    desktop.bundles().setVersion("1.4.0", "212");
    root->showAbout();
    ASSERT_TRUE(root->aboutCoordinator());
    const auto window = aboutWindow();
    EXPECT_EQ(window->title(), "About Tarnwick");
    EXPECT_EQ(window->styleMask(), 4099u);
    EXPECT_TRUE(window->titlebarAppearsTransparent());
    EXPECT_EQ(window->level(), platform::windowLevel::normal);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(root->childCoordinators().size(), 1u);

    const auto drawing = about().view().draw();
    EXPECT_EQ(drawing.icon, platform::Image::resource("AppIcon"));
    EXPECT_EQ(drawing.name, (tarnwick::StyledText{"Tarnwick", tarnwick::TextStyle::title}));
    EXPECT_EQ(drawing.versionLine,
              (tarnwick::StyledText{"v1.4.0 (212)", tarnwick::TextStyle::headline, false, true}));
    EXPECT_EQ(drawing.author, (AboutWindowView::AuthorLine{
                                  "Developed by Tarnwick contributors (Harrowmere)", false}));
    EXPECT_EQ(drawing.copyright,
              (tarnwick::StyledText{"Copyright © 2024 Harrowmere. All rights reserved.",
                                    tarnwick::TextStyle::caption, true}));

    window->orderFront();
    desktop.toolkit().windows().front()->makeKeyAndOrderFront();
    root->showAbout();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(root->childCoordinators().size(), 1u);
    EXPECT_TRUE(window->isKeyWindow());
}

TEST_F(AboutTest, AfterClosingANewAboutReadsTheBundleAnewInANewCoordinator) {
    root->showAbout();
    const auto first = root->aboutCoordinator();
    aboutWindow()->performClose();
    desktop.loop().runUntilIdle();
    EXPECT_FALSE(root->aboutCoordinator());
    EXPECT_TRUE(root->childCoordinators().empty());

    desktop.bundles().setVersion("2.0.0", "300");
    root->showAbout();
    EXPECT_EQ(made, 2);
    EXPECT_NE(root->aboutCoordinator(), first);
    EXPECT_EQ(about().view().draw().versionLine.text, "v2.0.0 (300)");
}

TEST(AboutWindowViewTest, TheAuthorIsALinkInMarkdownWhenThereIsAnAddressAndPlainTextOtherwise) {
    EXPECT_EQ(
        viewBy("Tarnwick contributors (Harrowmere)", std::nullopt).authorLine(),
        (AboutWindowView::AuthorLine{"Developed by Tarnwick contributors (Harrowmere)", false}));
    EXPECT_EQ(viewBy("Tarnwick contributors (Harrowmere)", "https://harrowmere.example/tarnwick")
                  .authorLine(),
              (AboutWindowView::AuthorLine{"Developed by [Tarnwick contributors (Harrowmere)]"
                                           "(https://harrowmere.example/tarnwick)",
                                           true}));
    // What ships: the author's name, and no address yet.
    EXPECT_STREQ(AboutCoordinator::developerName, "Tarnwick contributors (Harrowmere)");
    EXPECT_FALSE(AboutCoordinator::developerNameLink());
}

TEST(AboutWindowViewDeathTest, ANameOrAddressThatBreaksTheMarkdownLinkIsAFault) {
    EXPECT_DEATH(viewBy("Tarnwick [beta]", "https://harrowmere.example").authorLine(),
                 "no valid Markdown");
    EXPECT_DEATH(viewBy("Tarnwick", "https://harrowmere.example/a b").authorLine(),
                 "no valid Markdown");
}

TEST_F(AboutTest, ABundleWithoutItsCopyrightIsAFault) {
    desktop.bundles().setMainBundle(std::make_shared<platform::sim::SimBundle>(
        "/Applications/Tarnwick.app", "harrowmere.Tarnwick",
        platform::PropertyList::Dictionary{{"CFBundleName", "Tarnwick"},
                                           {"CFBundleShortVersionString", "1.0"},
                                           {"CFBundleVersion", "1"}}));
    EXPECT_DEATH(root->showAbout(), "The main bundle has no NSHumanReadableCopyright");
}
