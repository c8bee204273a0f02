#include "views/StyledLabel.h"

#include <QApplication>
#include <QLabel>
#include <QPalette>

namespace platform::qt {

QFont fontFor(tarnwick::TextStyle style, bool italic) {
    using tarnwick::TextStyle;
    QFont font = QApplication::font();
    const qreal base = font.pointSizeF() > 0 ? font.pointSizeF() : 10;
    switch (style) {
        case TextStyle::largeTitle:
            font.setPointSizeF(base * 2.0);
            break;
        case TextStyle::title:
            font.setPointSizeF(base * 1.7);
            break;
        case TextStyle::headline:
            font.setWeight(QFont::DemiBold);
            break;
        case TextStyle::body:
            break;
        case TextStyle::caption:
            font.setPointSizeF(base * 0.85);
            break;
    }
    font.setItalic(italic);
    return font;
}

QLabel* styledLabel(const tarnwick::StyledText& text, QWidget* parent) {
    auto* label = new QLabel(QString::fromStdString(text.text), parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setFont(fontFor(text.style, text.italic));
    if (text.secondary) {
        QPalette palette = label->palette();
        QColor dimmed = palette.color(QPalette::WindowText);
        dimmed.setAlphaF(0.6f);
        palette.setColor(QPalette::WindowText, dimmed);
        label->setPalette(palette);
    }
    return label;
}

}  // namespace platform::qt
