#include <gtest/gtest.h>

#include "SpineTestSupport.h"
#include "app/WindowDelegateForCoordinatorFinish.h"
#include "support/StandardOutput.h"

using spine::WindowCoordinator;
using tarnwick::CoordinatorProtocol;

namespace {

class CoordinatorTreeTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    std::shared_ptr<WindowCoordinator> makeChild(const CoordinatorProtocol::Ref& parent,
                                                 std::string title) {
        auto child = std::make_shared<WindowCoordinator>(parent, activation, std::move(title));
        parent->childCoordinators().push_back(child);
        return child;
    }

    tarnwick::ActivationController activation;
};

}  // namespace

TEST_F(CoordinatorTreeTest, FinishEndsTheSubtreeAndLeavesTheParent) {
    auto root = std::make_shared<WindowCoordinator>(nullptr, activation, "Root");
    auto child = makeChild(root, "Child");
    auto first = makeChild(child, "First");
    auto second = makeChild(child, "Second");
    std::weak_ptr<CoordinatorProtocol> weakChild = child;
    first.reset();
    second.reset();

    child->finish();
    // Each grandchild removed itself while the snapshot was walked.
    EXPECT_TRUE(child->childCoordinators().empty());
    EXPECT_TRUE(root->childCoordinators().empty());
    // The child still holds its parent until it goes; nothing else holds it.
    child.reset();
    EXPECT_TRUE(weakChild.expired());
}

TEST_F(CoordinatorTreeTest, ChildDidFinishRemovesByIdentityOnly) {
    auto root = std::make_shared<WindowCoordinator>(nullptr, activation, "Root");
    auto a = makeChild(root, "Same");
    auto b = makeChild(root, "Same");
    WindowCoordinator stranger(nullptr, activation, "Same");

    root->childDidFinish(stranger);
    EXPECT_EQ(root->childCoordinators().size(), 2u);
    root->childDidFinish(*b);
    ASSERT_EQ(root->childCoordinators().size(), 1u);
    EXPECT_EQ(root->childCoordinators()[0], a);
}

TEST_F(CoordinatorTreeTest, ClosingTheWindowEndsTheCoordinatorOneTurnLater) {
    auto root = std::make_shared<WindowCoordinator>(nullptr, activation, "Root");
    auto child = makeChild(root, "Settings");
    child->setFinishesOnWindowClose(true);
    auto delegate = child->windowDelegate();
    child->setFinishesOnWindowClose(true);
    EXPECT_EQ(child->windowDelegate(), delegate);  // one delegate only

    child->rootController().showWindow();
    quillbox::CapturedOutput output;
    child->rootController().window()->close();
    EXPECT_EQ(output.lines(), std::vector<std::string>{"[Activation] windowWillClose: Settings"});
    EXPECT_EQ(root->childCoordinators().size(), 1u);

    desktop.loop().runOneTurn();
    EXPECT_TRUE(root->childCoordinators().empty());
    // Finishing closed the window again; the second close tells no one.
    EXPECT_EQ(child->willFinishCount, 1);
}

TEST_F(CoordinatorTreeTest, TheDelegateDoesNothingOnceTheCoordinatorIsGoneAndLogsAMissingWindow) {
    auto child = std::make_shared<WindowCoordinator>(nullptr, activation, "About");
    child->setFinishesOnWindowClose(true);
    auto delegate = child->windowDelegate();
    child->rootController().showWindow();
    child->rootController().window()->close();
    child.reset();
    desktop.loop().runUntilIdle();
    EXPECT_EQ(delegate->parent(), nullptr);

    quillbox::CapturedOutput output;
    delegate->windowWillClose(nullptr);
    EXPECT_EQ(output.lines(), std::vector<std::string>{"[Activation] windowWillClose: <nil>"});
}
