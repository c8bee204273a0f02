// What every toolkit's windows promise, run against the simulated desktop's
// and against the Qt widgets: a close tells the delegate once, before the
// window hides; the frame is placed in bottom-left points; the alpha value
// reads back as set; restyling a shown window leaves it shown where it was.
#include <gtest/gtest.h>

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "RecordingWindowDelegate.h"
#include "platform/WindowController.h"
#include "platform/sim/SimToolkit.h"
#include "platform/sim/SimWindow.h"
#include "views/QtContentView.h"
#include "views/QtToolkit.h"

namespace {

using namespace platform;

struct SimulatedToolkit {
    sim::SimToolkit toolkit;

    std::shared_ptr<Window> withContent(std::shared_ptr<Window> window, CGSize size) {
        static_cast<sim::SimWindow&>(*window).setContentSize(size);
        return window;
    }
};

struct QtWidgets {
    qt::QtToolkit toolkit;

    std::shared_ptr<Window> withContent(std::shared_ptr<Window> window, CGSize size) {
        auto* widget = new QWidget;
        widget->setFixedSize(static_cast<int>(size.width), static_cast<int>(size.height));
        window->setContentView(std::make_shared<qt::QtContentView>(widget));
        return window;
    }
};

template <typename Backend>
class WindowTest : public ::testing::Test {
  protected:
    std::shared_ptr<Window> window(WindowStyleMask style, CGSize size = {80, 60}) {
        return backend.withContent(backend.toolkit.makeWindow(style), size);
    }
    std::shared_ptr<Window> panel(CGSize size) {
        return backend.withContent(backend.toolkit.makePanel(), size);
    }

    Backend backend;
};

class BackendNames {
  public:
    template <typename T>
    static std::string GetName(int) {
        return std::is_same_v<T, SimulatedToolkit> ? "Simulated" : "Qt";
    }
};
using Backends = ::testing::Types<SimulatedToolkit, QtWidgets>;
TYPED_TEST_SUITE(WindowTest, Backends, BackendNames);

}  // namespace

TYPED_TEST(WindowTest, EveryCloseTellsTheDelegateOnceBeforeTheWindowHides) {
    auto window = this->window(windowStyle::titled | windowStyle::closable);
    viewtest::RecordingWindowDelegate delegate;
    window->setDelegate(&delegate);

    window->close();  // never shown: nothing to close
    EXPECT_TRUE(delegate.closed.empty());

    WindowController(window).showWindow();
    EXPECT_TRUE(window->isVisible());
    window->close();
    window->close();
    ASSERT_EQ(delegate.closed.size(), 1u);
    EXPECT_EQ(delegate.closed.front(), window.get());
    EXPECT_TRUE(delegate.wasVisibleWhenTold);
    EXPECT_FALSE(window->isVisible());

    window->orderFront();  // a closed window can be shown again and closed again
    window->close();
    EXPECT_EQ(delegate.closed.size(), 2u);
}

TYPED_TEST(WindowTest, TheFrameIsPlacedInBottomLeftPointsAndTheAlphaReadsBackAsSet) {
    auto panel = this->panel({200, 100});
    EXPECT_EQ(panel->frame().size, (CGSize{200, 100}));
    panel->setFrameOrigin({100, 50});
    EXPECT_EQ(panel->frame().origin, (CGPoint{100, 50}));

    for (const double alpha : {0.004, 1.0, -0.5}) {
        panel->setAlphaValue(alpha);
        EXPECT_DOUBLE_EQ(panel->alphaValue(), alpha);
    }
}

TYPED_TEST(WindowTest, RestylingAShownWindowKeepsItShownWhereItWas) {
    auto window = this->window(windowStyle::titled);
    window->setFrameOrigin({40, 30});
    window->orderFront();

    window->setLevel(windowLevel::floating);
    window->setStyleMask(windowStyle::titled | windowStyle::closable);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->level(), windowLevel::floating);
    EXPECT_EQ(window->styleMask(), windowStyle::titled | windowStyle::closable);
    EXPECT_EQ(window->frame().origin, (CGPoint{40, 30}));
}
