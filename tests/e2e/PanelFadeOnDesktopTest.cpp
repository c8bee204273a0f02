// The panel's fade on the real desktop: each move of the pointer away from
// the panel sets the window's opacity that the distance gives, falling
// linearly to nothing 250 points from the frame, where the panel closes.
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include "DesktopDriver.h"
#include "RunningProgram.h"

namespace {

using e2e::eventually;

// The opacity the window asks for, as a compositor reads it: the
// fraction of 0xffffffff in _NET_WM_WINDOW_OPACITY, 1 when it is unset.
class OpacityReader {
  public:
    OpacityReader() : connection_(xcb_connect(nullptr, nullptr)) {
        const char name[] = "_NET_WM_WINDOW_OPACITY";
        auto* reply = xcb_intern_atom_reply(
            connection_, xcb_intern_atom(connection_, 0, std::strlen(name), name), nullptr);
        atom_ = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
    }
    ~OpacityReader() { xcb_disconnect(connection_); }

    double of(xcb_window_t window) const {
        auto* reply = xcb_get_property_reply(
            connection_, xcb_get_property(connection_, 0, window, atom_, XCB_ATOM_CARDINAL, 0, 1),
            nullptr);
        double opacity = 1.0;
        if (reply && reply->format == 32 && xcb_get_property_value_length(reply) == 4)
            opacity = *static_cast<const std::uint32_t*>(xcb_get_property_value(reply)) /
                      double{0xffffffffu};
        std::free(reply);
        return opacity;
    }

  private:
    xcb_connection_t* connection_;
    xcb_atom_t atom_ = XCB_ATOM_NONE;
};

}  // namespace

TEST(PanelFadeOnDesktopTest, EachMoveSetsTheOpacityOfTheLinearFadeAndThePanelClosesAt250) {
    e2e::PrivateFolders folders;
    folders.markInstructionsSeen();
    e2e::Desktop desktop;
    desktop.movePointer(640, 400);
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();
    std::optional<xcb_window_t> panel;
    ASSERT_TRUE(
        eventually([&] { return (panel = desktop.panelClient(tarnwick.pid())).has_value(); }));
    const auto frame = desktop.shownPanel(tarnwick.pid());
    ASSERT_TRUE(frame);

    // To the right of the frame, level with its middle: the distance is the
    // gap to the frame's right edge. Out and back in, each move answered.
    const int right = frame->x + frame->width;
    const int middle = frame->y + frame->height / 2;
    OpacityReader opacity;
    for (const int distance : {25, 75, 125, 225, 175}) {
        desktop.movePointer(right + distance, middle);
        const double expected = (250.0 - distance) / 250.0;
        double seen = 0;
        EXPECT_TRUE(eventually([&] {
            seen = opacity.of(*panel);
            return std::abs(seen - expected) < 0.01;
        })) << "at "
            << distance << " points the opacity is " << seen << ", not " << expected;
    }

    desktop.movePointer(right + 250, middle);
    EXPECT_TRUE(eventually([&] { return !desktop.panelClient(tarnwick.pid()); }))
        << "the panel stayed at 250 points";
    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}
