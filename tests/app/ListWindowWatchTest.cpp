#include <algorithm>

#include "app/ListWindowModelDesktop.h"
#include "app/RecordingRowCoordinator.h"
#include "listwindow/ListWindowView.h"

namespace tarnwick::testing {
namespace {

using Strings = std::vector<std::string>;

// The view's own following of the listed windows, beside the model's: it
// asks for rows to be drawn again and leaves out windows that went, while
// the model refreshes only for its own causes.
class ListWindowWatchTest : public ListWindowModelDesktop {
  protected:
    ListWindowWatchTest() {
        changes = view.windowChanged().connect([this](std::optional<std::size_t> windowId) {
            if (windowId)
                changedWindows.push_back(*windowId);
        });
    }

    bool asked(const ListWindowView::WindowRef& window) const {
        return std::count(changedWindows.begin(), changedWindows.end(), window->id()) > 0;
    }
    Strings rowTitles() const {
        Strings titles;
        for (const auto& row : view.content().rows)
            titles.push_back(row.window->getTitle());
        return titles;
    }

    RecordingRowCoordinator coordinator;
    ListWindowView view{*model, coordinator};
    std::vector<std::size_t> changedWindows;
    platform::Subscription changes;
};

TEST_F(ListWindowWatchTest, ARetitledWindowAsksForItsRowAndOneThatWentLeavesTheRows) {
    const auto windows = windowsState().windows;
    ASSERT_EQ(rowTitles(), (Strings{"Pictures", "Downloads", "Documents"}));
    auto& sim = desktop.accessibility();

    // Windows from before the model followed the application bring it no
    // refresh of their own; their rows are asked for all the same.
    sim.setTitle(windows[1]->element(), "Downloads (2)");
    settle();
    EXPECT_TRUE(asked(windows[1]));
    EXPECT_FALSE(asked(windows[0]));
    EXPECT_EQ(changeCount, 0);
    EXPECT_EQ(ListWindowView::ListRow(windows[1], coordinator,
                                      std::make_shared<ListWindowView::ListRow::VM>())
                  .draw()
                  .title,
              "Downloads (2)");

    // A minimised window's row is drawn faint.
    sim.setMinimized(windows[0]->element(), true);
    settle();
    EXPECT_TRUE(asked(windows[0]));

    sim.removeWindow(windows[2]->element());
    settle();
    EXPECT_TRUE(asked(windows[2]));
    const auto content = view.content();
    ASSERT_EQ(rowTitles(), (Strings{"Pictures", "Downloads (2)"}));
    EXPECT_FALSE(content.rows.back().hasDivider);

    // A read that fails for another reason keeps the row, which shows what
    // it can.
    sim.injectFault(SimAXCall::copyAttributeValue,
                    SimAXFault::error(platform::axError::cannotComplete), windows[0]->element(),
                    "AXRole");
    EXPECT_EQ(view.content().rows.size(), 2u);
}

TEST_F(ListWindowWatchTest, ANewSelectionIsFollowedAndTheOldOneNoLonger) {
    const auto finderWindow = windowsState().windows.front();
    model->selectApp(preview);
    const auto photo = windowsState().windows.front();
    auto& sim = desktop.accessibility();

    sim.setTitle(finderWindow->element(), "Elsewhere");
    sim.setTitle(photo->element(), "Photo 2.jpg");
    settle();
    EXPECT_FALSE(asked(finderWindow));
    EXPECT_TRUE(asked(photo));
}

}  // namespace
}  // namespace tarnwick::testing
