#include "views/QtRecorderAppearance.h"

#include <QGuiApplication>
#include <cmath>

namespace platform::qt {

namespace {

double relativeLuminance(const QColor& color) {
    const auto channel = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) +
           0.0722 * channel(color.blueF());
}

double contrastRatio(const QColor& a, const QColor& b) {
    const double la = relativeLuminance(a);
    const double lb = relativeLuminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

class ApplicationAppearance final : public lirixkro::SRToolkitAppearanceSource {
  public:
    lirixkro::SRToolkitAppearance toolkitAppearance() const override {
        return toolkitAppearanceOf(QGuiApplication::palette(), QGuiApplication::layoutDirection());
    }
};

}  // namespace

lirixkro::SRToolkitAppearance toolkitAppearanceOf(const QPalette& palette,
                                                  Qt::LayoutDirection direction) {
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    lirixkro::SRToolkitAppearance appearance;
    appearance.appearanceName = window.lightnessF() < text.lightnessF() ? "NSAppearanceNameDarkAqua"
                                                                        : "NSAppearanceNameAqua";
    appearance.increaseContrast = contrastRatio(window, text) >= 20.5;
    appearance.layoutDirection = direction == Qt::RightToLeft
                                     ? lirixkro::SRLayoutDirection::rightToLeft
                                     : lirixkro::SRLayoutDirection::leftToRight;
    appearance.graphiteTint = palette.color(QPalette::Highlight).hsvSaturationF() < 0.1;
    return appearance;
}

QColor catalogColor(const QPalette& palette, const lirixkro::SRTextAttributes& attributes) {
    QColor color = palette.color(QPalette::Active, QPalette::ButtonText);
    // More contrast asked for: no text is drawn fainter than the palette's.
    const bool highContrast = toolkitAppearanceOf(palette, Qt::LeftToRight).increaseContrast;
    if (attributes.fontColorName == "secondaryLabelColor" && !highContrast) {
        color.setAlphaF(0.62);
    } else if (attributes.fontColorName == "disabledControlTextColor") {
        color = palette.color(QPalette::Disabled, QPalette::ButtonText);
        if (color == palette.color(QPalette::Active, QPalette::ButtonText))
            color.setAlphaF(0.4);
    }
    return color;
}

void installApplicationAppearanceSource() {
    static const ApplicationAppearance source;
    lirixkro::SRRecorderControlStyleComponents::setApplicationAppearanceSource(&source);
}

}  // namespace platform::qt
