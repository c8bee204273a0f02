#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPalette>
#include <QPixmap>
#include <QScreen>
#include <cstdlib>

#include "ListWindowFixture.h"
#include "views/SystemSymbols.h"
#include "views/TrafficLightButton.h"

// Renders the panel as a person would see it. With TARNWICK_SCREENSHOTS set
// to a folder, the pictures are saved there to be looked at.
namespace viewtest {
namespace {

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x2B, 0x2B, 0x2D));
    palette.setColor(QPalette::WindowText, QColor(0xEC, 0xEC, 0xEC));
    palette.setColor(QPalette::Button, QColor(0x3A, 0x3A, 0x3C));
    palette.setColor(QPalette::ButtonText, QColor(0xEC, 0xEC, 0xEC));
    palette.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
    palette.setColor(QPalette::Text, QColor(0xEC, 0xEC, 0xEC));
    palette.setColor(QPalette::Light, QColor(0x50, 0x50, 0x52));
    palette.setColor(QPalette::Mid, QColor(0x30, 0x30, 0x32));
    palette.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x18));
    return palette;
}

void save(const QPixmap& picture, const QString& name) {
    const char* folder = std::getenv("TARNWICK_SCREENSHOTS");
    if (!folder)
        return;
    QDir().mkpath(QString::fromLocal8Bit(folder));
    picture.save(QDir(QString::fromLocal8Bit(folder)).filePath(name));
}

QColor centreOf(const QPixmap& picture, const QWidget& root, const QWidget& part) {
    const QPointF centre =
        QPointF(part.mapTo(&root, part.rect().center())) * picture.devicePixelRatio();
    return picture.toImage().pixelColor(centre.toPoint());
}

class ListWindowScreenshot : public ListWindowTest {
  protected:
    ListWindowView::Content desktop() {
        auto minimised = corvane::testing::SimWindowSetup::titled("Quarterly Report.pdf");
        minimised.minimized = true;
        auto fixed = corvane::testing::SimWindowSetup::titled("Connect to Server");
        fixed.zoomButton.enabled = false;
        fixed.minimizeButton.enabled = false;
        fixed.becomesMain = false;
        const auto report = sim.addWindow(appPid, minimised);
        const auto server = sim.addWindow(appPid, fixed);
        loop.runUntilIdle();
        return windowsContent({documents, downloads, report, server});
    }
};

TEST_F(ListWindowScreenshot, ThePanelInLightAndDarkWithOneRowUnderThePointer) {
    show(desktop());
    hover(rowWidgets().at(1), true);
    widget->adjustSize();
    QPixmap light = widget->grab();
    save(light, QStringLiteral("list-window-light.png"));

    // Resting, an enabled button is its full colour; a disabled one faint.
    const auto rows = rowWidgets();
    EXPECT_EQ(centreOf(light, *widget, *rows[0]->button(0)), platform::qt::titleBarColor::red());
    const QColor faint = centreOf(light, *widget, *rows[3]->button(2));
    EXPECT_GT(faint.lightness(), platform::qt::titleBarColor::green().lightness());
    EXPECT_NEAR(rows[2]->title()->palette().color(QPalette::WindowText).alphaF(), 0.5, 0.01);
    // Under the pointer, the close mark is cut out of the red disc.
    EXPECT_NE(centreOf(light, *widget, *rows[1]->button(0)), platform::qt::titleBarColor::red());

    widget->setPalette(darkPalette());
    QCoreApplication::processEvents();
    QPixmap dark = widget->grab();
    save(dark, QStringLiteral("list-window-dark.png"));
    EXPECT_EQ(centreOf(dark, *widget, *rows[0]->button(0)), platform::qt::titleBarColor::red());
    EXPECT_GT(rows[0]->title()->palette().color(QPalette::WindowText).lightness(), 200);
}

TEST_F(ListWindowScreenshot, TheEmptyAndErrorPanels) {
    auto empty = windowsContent({});
    empty.emptyText = "Files currently has no open windows.";
    show(empty);
    widget->adjustSize();
    save(widget->grab(), QStringLiteral("list-window-empty.png"));

    ListWindowView::Content error;
    error.tree = ListWindowView::Tree::errorText;
    error.errorText = "The operation couldn't be completed.";
    redraw(error);
    widget->adjustSize();
    const QPixmap picture = widget->grab();
    save(picture, QStringLiteral("list-window-error.png"));
    EXPECT_LT(picture.height(), 40);
}

TEST_F(ListWindowScreenshot, ATitleTooLongForTheScreenShortenedInTheMiddle) {
    std::string title = "Minutes of the planning meeting";
    while (title.size() < 300)
        title += ", with notes on every point raised";
    title += " (final).odt";
    const auto longOne = sim.addWindow(appPid, corvane::testing::SimWindowSetup::titled(title));
    loop.runUntilIdle();
    show(windowsContent({documents, longOne, downloads}));
    widget->adjustSize();
    save(widget->grab(), QStringLiteral("list-window-long-title.png"));
    EXPECT_LE(widget->width(), QGuiApplication::primaryScreen()->availableGeometry().width());
}

}  // namespace
}  // namespace viewtest
