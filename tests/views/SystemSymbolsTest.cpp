#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>

#include "platform/Image.h"
#include "views/PaintedIcon.h"
#include "views/QtImages.h"
#include "views/StatusBarGlyph.h"
#include "views/SystemSymbols.h"

namespace {

using platform::qt::paintSymbol;

constexpr int side = 64;

QImage symbolImage(const QString& name, const QColor& color = Qt::black) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintSymbol(painter, QRectF(0, 0, side, side), name, color);
    return image;
}

// The coverage at a point of the design's unit square.
int alphaAt(const QImage& image, double x, double y) {
    return qAlpha(image.pixel(static_cast<int>(x * side), static_cast<int>(y * side)));
}

TEST(SystemSymbols, MarksAreCutOutOfTheirFilledShapes) {
    struct Probe {
        const char* name;
        double x, y;
        bool covered;
    };
    const Probe probes[] = {
        {"circle.fill", 0.5, 0.5, true},
        {"circle.fill", 0.04, 0.04, false},
        {"x.circle.fill", 0.5, 0.5, false},
        {"x.circle.fill", 0.5, 0.3, true},
        {"minus.circle.fill", 0.5, 0.5, false},
        {"minus.circle.fill", 0.5, 0.3, true},
        {"viewfinder.circle.fill", 0.5, 0.5, true},
        {"viewfinder.circle.fill", 0.3, 0.3, false},
        {"circle", 0.5, 0.5, false},
        {"circle", 0.5, 0.065, true},
        {"checkmark.seal.fill", 0.44, 0.64, false},
        {"checkmark.seal.fill", 0.5, 0.2, true},
        {"xmark.seal.fill", 0.5, 0.5, false},
        {"xmark.seal.fill", 0.2, 0.5, true},
        {"gear", 0.5, 0.5, false},
        {"gear", 0.5, 0.25, true},
        {"sparkle", 0.5, 0.5, true},
        {"sparkle", 0.15, 0.15, false},
    };
    for (const Probe& probe : probes) {
        SCOPED_TRACE(probe.name);
        const QImage image = symbolImage(probe.name);
        if (probe.covered)
            EXPECT_EQ(alphaAt(image, probe.x, probe.y), 255) << probe.x << "," << probe.y;
        else
            EXPECT_EQ(alphaAt(image, probe.x, probe.y), 0) << probe.x << "," << probe.y;
    }
}

TEST(SystemSymbols, DrawnInTheirColourWithSmoothEdges) {
    const QImage red = symbolImage("circle.fill", platform::qt::titleBarColor::red());
    EXPECT_EQ(red.pixelColor(side / 2, side / 2), platform::qt::titleBarColor::red());
    // Between the inside and the outside lie partly covered pixels.
    int partial = 0;
    for (int x = 0; x < side; ++x) {
        const int alpha = qAlpha(red.pixel(x, side / 2));
        partial += alpha > 0 && alpha < 255;
    }
    EXPECT_GE(partial, 2);
    EXPECT_FALSE(platform::qt::isDrawnSymbol("no.such.symbol"));
    EXPECT_TRUE(platform::qt::symbolPath("no.such.symbol", QRectF(0, 0, 10, 10)).isEmpty());
}

TEST(SystemSymbols, IconsAreDrawnForTheirSizeAndThePalettesTextColour) {
    const QIcon icon = platform::qt::iconFor(platform::Image::systemSymbol("x.circle.fill"));
    ASSERT_FALSE(icon.isNull());
    const QPixmap sharp = icon.pixmap(QSize(16, 16), 2.0);
    EXPECT_EQ(sharp.size(), QSize(32, 32));
    EXPECT_EQ(sharp.devicePixelRatio(), 2.0);

    const QPalette original = QApplication::palette();
    QPalette dark = original;
    dark.setColor(QPalette::WindowText, Qt::white);
    QApplication::setPalette(dark);
    const QImage drawn = icon.pixmap(QSize(32, 32)).toImage();
    QApplication::setPalette(original);
    EXPECT_EQ(drawn.pixelColor(16, 8), QColor(Qt::white));
    EXPECT_EQ(qAlpha(drawn.pixel(16, 16)), 0);  // the mark is cut out
}

// The status glyph has light and dark parts, so it shows on either panel.
TEST(SystemSymbols, TheStatusGlyphStandsOutOnLightAndDarkPanels) {
    for (const QColor background : {QColor(Qt::white), QColor(0x20, 0x20, 0x20)}) {
        QImage image(22, 22, QImage::Format_ARGB32_Premultiplied);
        image.fill(background);
        QPainter painter(&image);
        platform::qt::paintStatusBarGlyph(painter, QRectF(0, 0, 22, 22));
        painter.end();
        int standingOut = 0;
        for (int y = 0; y < 22; ++y)
            for (int x = 0; x < 22; ++x) {
                const QColor pixel = image.pixelColor(x, y);
                standingOut += std::abs(pixel.lightness() - background.lightness()) > 100;
            }
        EXPECT_GT(standingOut, 40) << background.name().toStdString();
    }
    EXPECT_FALSE(
        platform::qt::iconFor(platform::Image::resource("StatusBarIcon")).pixmap(22).isNull());
}

}  // namespace
