#include "views/SystemSymbols.h"

#include <QPainter>
#include <QPainterPathStroker>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <map>
#include <numbers>

namespace platform::qt {

namespace {

// Symbols are designed on a unit square and built at their final size, so
// that cutting one shape out of another happens at the resolution they are
// drawn at.
class Frame {
  public:
    explicit Frame(const QRectF& bounds)
        : side_(std::min(bounds.width(), bounds.height())),
          origin_(bounds.center() - QPointF(side_ / 2, side_ / 2)) {}

    QPointF at(double x, double y) const { return origin_ + QPointF(x * side_, y * side_); }
    double length(double unit) const { return unit * side_; }

    QPainterPath circle(double radius) const {
        QPainterPath path;
        path.addEllipse(at(0.5, 0.5), length(radius), length(radius));
        return path;
    }

    // One open line through the points.
    QPainterPath line(std::initializer_list<QPointF> points) const {
        QPainterPath path;
        bool first = true;
        for (const QPointF& point : points) {
            const QPointF mapped = at(point.x(), point.y());
            first ? path.moveTo(mapped) : path.lineTo(mapped);
            first = false;
        }
        return path;
    }

    // The outline of lines drawn with a round pen of this width.
    QPainterPath stroked(const QPainterPath& lines, double width) const {
        QPainterPathStroker stroker;
        stroker.setWidth(length(width));
        stroker.setCapStyle(Qt::RoundCap);
        stroker.setJoinStyle(Qt::RoundJoin);
        return stroker.createStroke(lines);
    }

    // A closed shape whose distance from the centre follows the angle.
    QPainterPath radial(const std::function<double(double)>& radiusAt, int steps) const {
        QPolygonF outline;
        for (int step = 0; step < steps; ++step) {
            const double angle = 2 * std::numbers::pi * step / steps;
            const double radius = radiusAt(angle);
            outline << at(0.5 + radius * std::cos(angle), 0.5 + radius * std::sin(angle));
        }
        QPainterPath path;
        path.addPolygon(outline);
        path.closeSubpath();
        return path;
    }

  private:
    double side_;
    QPointF origin_;
};

// A hair inside the square, so that smoothing at the edge isn't clipped.
constexpr double discRadius = 0.47;
constexpr double markWidth = 0.095;

QPainterPath xMark(const Frame& frame, double near, double far) {
    QPainterPath lines = frame.line({{near, near}, {far, far}});
    lines.addPath(frame.line({{far, near}, {near, far}}));
    return frame.stroked(lines, markWidth);
}

QPainterPath disc(const Frame& frame) {
    return frame.circle(discRadius);
}

QPainterPath seal(const Frame& frame) {
    constexpr int bumps = 12;
    return frame.radial([](double angle) { return 0.435 + 0.045 * std::cos(bumps * angle); },
                        bumps * 12);
}

QPainterPath viewfinderMarks(const Frame& frame) {
    constexpr double near = 0.3;
    constexpr double far = 0.7;
    constexpr double arm = 0.13;
    QPainterPath lines = frame.line({{near, near + arm}, {near, near}, {near + arm, near}});
    lines.addPath(frame.line({{far - arm, near}, {far, near}, {far, near + arm}}));
    lines.addPath(frame.line({{far, far - arm}, {far, far}, {far - arm, far}}));
    lines.addPath(frame.line({{near + arm, far}, {near, far}, {near, far - arm}}));
    return frame.stroked(lines, 0.075);
}

QPainterPath gear(const Frame& frame) {
    constexpr int teeth = 8;
    constexpr double outer = 0.48;
    constexpr double root = 0.37;
    constexpr double pitch = 2 * std::numbers::pi / teeth;
    QPolygonF outline;
    for (int tooth = 0; tooth < teeth; ++tooth) {
        const double middle = tooth * pitch;
        const auto point = [&](double radius, double angle) {
            return frame.at(0.5 + radius * std::cos(middle + angle),
                            0.5 + radius * std::sin(middle + angle));
        };
        outline << point(root, -0.3 * pitch) << point(outer, -0.17 * pitch)
                << point(outer, 0.17 * pitch) << point(root, 0.3 * pitch);
    }
    QPainterPath body;
    body.addPolygon(outline);
    body.closeSubpath();
    return body.subtracted(frame.circle(0.15));
}

QPainterPath sparkle(const Frame& frame) {
    QPainterPath path;
    path.moveTo(frame.at(0.5, 0.02));
    path.quadTo(frame.at(0.56, 0.44), frame.at(0.98, 0.5));
    path.quadTo(frame.at(0.56, 0.56), frame.at(0.5, 0.98));
    path.quadTo(frame.at(0.44, 0.56), frame.at(0.02, 0.5));
    path.quadTo(frame.at(0.44, 0.44), frame.at(0.5, 0.02));
    path.closeSubpath();
    return path;
}

using Builder = QPainterPath (*)(const Frame&);

const std::map<QString, Builder>& builders() {
    static const std::map<QString, Builder> table{
        {QStringLiteral("circle.fill"), [](const Frame& f) { return disc(f); }},
        {QStringLiteral("x.circle.fill"),
         [](const Frame& f) { return disc(f).subtracted(xMark(f, 0.35, 0.65)); }},
        {QStringLiteral("minus.circle.fill"),
         [](const Frame& f) {
             return disc(f).subtracted(f.stroked(f.line({{0.29, 0.5}, {0.71, 0.5}}), markWidth));
         }},
        {QStringLiteral("viewfinder.circle.fill"),
         [](const Frame& f) { return disc(f).subtracted(viewfinderMarks(f)); }},
        {QStringLiteral("circle"), [](const Frame& f) { return f.stroked(f.circle(0.44), 0.07); }},
        {QStringLiteral("checkmark.seal.fill"),
         [](const Frame& f) {
             return seal(f).subtracted(
                 f.stroked(f.line({{0.31, 0.51}, {0.44, 0.64}, {0.69, 0.37}}), markWidth));
         }},
        {QStringLiteral("xmark.seal.fill"),
         [](const Frame& f) { return seal(f).subtracted(xMark(f, 0.37, 0.63)); }},
        {QStringLiteral("gear"), gear},
        {QStringLiteral("sparkle"), sparkle},
    };
    return table;
}

}  // namespace

bool isDrawnSymbol(const QString& name) {
    return builders().contains(name);
}

QPainterPath symbolPath(const QString& name, const QRectF& bounds) {
    const auto found = builders().find(name);
    if (found == builders().end() || bounds.isEmpty())
        return {};
    return found->second(Frame(bounds));
}

void paintSymbol(QPainter& painter, const QRectF& bounds, const QString& name,
                 const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPath(symbolPath(name, bounds));
    painter.restore();
}

namespace titleBarColor {
QColor red() {
    return QColor(0xFF, 0x5F, 0x57);
}
QColor yellow() {
    return QColor(0xFE, 0xBC, 0x2E);
}
QColor green() {
    return QColor(0x28, 0xC8, 0x40);
}
}  // namespace titleBarColor

}  // namespace platform::qt
