#include "views/RecorderControlPainter.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPaintEngine>
#include <QPainterPath>

#include "views/QtRecorderAppearance.h"
#include "views/RecorderControlWidget.h"

namespace platform::qt {

using lirixkro::SRRecorderControl;
using lirixkro::SRStyleImage;

namespace {

QRectF rectOf(const platform::CGRect& rect) {
    return QRectF(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

QPixmap loadPixmap(const std::filesystem::path& path, double ratio) {
    static QHash<QString, QPixmap> cache;
    const QString key = QString::fromStdString(path.string());
    auto found = cache.find(key);
    if (found == cache.end()) {
        QPixmap pixmap(key);
        pixmap.setDevicePixelRatio(ratio);
        found = cache.insert(key, pixmap);
    }
    return *found;
}

}  // namespace

QFont labelFont(const lirixkro::SRTextAttributes& attributes, const QFont& widgetFont) {
    QFont font = widgetFont;
    if (!attributes.isSystemFont)
        font.setFamily(QString::fromStdString(attributes.fontName));
    if (attributes.fontSize > 0)
        font.setPixelSize(static_cast<int>(std::lround(attributes.fontSize)));
    return font;
}

QPixmap styleImage(const SRStyleImage& image, double devicePixelRatio) {
    if (devicePixelRatio > 1 && !image.path2x.empty())
        return loadPixmap(image.path2x, 2);
    if (!image.path.empty())
        return loadPixmap(image.path, 1);
    return loadPixmap(image.path2x, 2);
}

RecorderControlPainter::RecorderControlPainter(RecorderControlWidget& widget)
    : widget_(widget), painter_(&widget) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
}

// The scale of what is painted on: the screen's, or that of the picture
// the widget is rendered into.
double RecorderControlPainter::deviceRatio() {
    const QPaintDevice* device =
        painter_.paintEngine() ? painter_.paintEngine()->paintDevice() : nullptr;
    return device ? device->devicePixelRatioF() : widget_.devicePixelRatioF();
}

void RecorderControlPainter::paint() {
    drawBezel();
    drawLabel();
    drawButtons();
    drawFocusRing();
}

void RecorderControlPainter::drawBezel() {
    const SRRecorderControl& control = *widget_.control();
    const auto& look = control.style()->look();
    const SRStyleImage *left = &look.bezelNormalLeft, *center = &look.bezelNormalCenter,
                       *right = &look.bezelNormalRight;
    if (!control.isEnabled()) {
        left = &look.bezelDisabledLeft, center = &look.bezelDisabledCenter,
        right = &look.bezelDisabledRight;
    } else if (control.isRecording()) {
        left = &look.bezelRecordingLeft, center = &look.bezelRecordingCenter,
        right = &look.bezelRecordingRight;
    } else if (control.mouseTrackingButtonTag() == SRRecorderControl::mainButtonTag) {
        left = &look.bezelPressedLeft, center = &look.bezelPressedCenter,
        right = &look.bezelPressedRight;
    }
    const double ratio = deviceRatio();
    const QRectF bounds = rectOf(control.layoutGuides().backgroundDrawingGuide);
    const double height = bounds.height();
    const double leftWidth = left->size.width * height / std::max(1.0, left->size.height);
    const double rightWidth = right->size.width * height / std::max(1.0, right->size.height);
    painter_.drawPixmap(QRectF(bounds.left(), bounds.top(), leftWidth, height),
                        styleImage(*left, ratio), QRectF());
    painter_.drawPixmap(QRectF(bounds.left() + leftWidth, bounds.top(),
                               std::max(0.0, bounds.width() - leftWidth - rightWidth), height),
                        styleImage(*center, ratio), QRectF());
    painter_.drawPixmap(QRectF(bounds.right() - rightWidth, bounds.top(), rightWidth, height),
                        styleImage(*right, ratio), QRectF());
}

void RecorderControlPainter::drawLabel() {
    const SRRecorderControl& control = *widget_.control();
    const auto attributes = control.drawingLabelAttributes();
    const QFont font = labelFont(attributes, widget_.font());
    const QFontMetricsF metrics(font);
    const QRectF area = rectOf(control.layoutGuides().labelDrawingGuide);
    const QString text = metrics.elidedText(QString::fromStdString(control.drawingLabel()),
                                            Qt::ElideMiddle, area.width());
    const double baseline =
        widget_.height() - control.style()->look().baselineDrawingOffsetFromBottom;
    const double width = metrics.horizontalAdvance(text);
    painter_.setFont(font);
    painter_.setPen(catalogColor(widget_.palette(), attributes));
    painter_.drawText(QPointF(area.left() + (area.width() - width) / 2, baseline), text);
}

void RecorderControlPainter::drawButtons() {
    const SRRecorderControl& control = *widget_.control();
    if (!control.isRecording())
        return;
    const auto& look = control.style()->look();
    const auto guides = control.layoutGuides();
    const double ratio = deviceRatio();
    const long tag = control.mouseTrackingButtonTag();
    if (guides.cancelButtonDrawingGuide.size.width > 0) {
        const auto& image = tag == SRRecorderControl::cancelButtonTag ? look.cancelButtonPressed
                                                                      : look.cancelButton;
        painter_.drawPixmap(rectOf(guides.cancelButtonDrawingGuide), styleImage(image, ratio),
                            QRectF());
    }
    if (guides.clearButtonDrawingGuide.size.width > 0) {
        const auto& image =
            tag == SRRecorderControl::clearButtonTag ? look.clearButtonPressed : look.clearButton;
        painter_.drawPixmap(rectOf(guides.clearButtonDrawingGuide), styleImage(image, ratio),
                            QRectF());
    }
}

void RecorderControlPainter::drawFocusRing() {
    if (!widget_.hasFocus())
        return;
    const auto& look = widget_.control()->style()->look();
    const auto& insets = look.focusRingInsets;
    QRectF ring =
        QRectF(widget_.rect())
            .adjusted(insets.left + 1, insets.top + 1, -insets.right - 1, -insets.bottom - 1);
    QColor accent = widget_.palette().color(QPalette::Highlight);
    accent.setAlphaF(0.7);
    painter_.setPen(QPen(accent, 2));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRoundedRect(ring, look.focusRingCornerRadius.width,
                             look.focusRingCornerRadius.height);
}

}  // namespace platform::qt
