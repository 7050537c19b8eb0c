#include "artwork/Pictures.h"
#include "artwork/Raster.h"

#include <QtGui/QLinearGradient>
#include <QtGui/QTransform>
#include <cmath>
#include <sstream>
#include <vector>

// The product's mark: a weather vane's arrow, which is also a tuner's needle, turning before six strings. Its
// shapes stand in a square of 64 units; the logo, the icons and the scalable icon are all made from them.

namespace {

constexpr double UNITS = 64.0;

struct MarkShape {
    QPainterPath path;
    QColor top;
    QColor bottom;
};

QPainterPath Polygon(std::initializer_list<QPointF> points) {
    QPainterPath path;
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
    path.closeSubpath();
    return path;
}

std::vector<MarkShape> MarkShapes() {
    std::vector<MarkShape> shapes;
    QPainterPath plate;
    plate.addRoundedRect(QRectF(0.0, 0.0, UNITS, UNITS), 13.5, 13.5);
    shapes.push_back({plate, QColor(0x3D, 0x7F, 0xD9), QColor(0x17, 0x3F, 0x8A)});

    QPainterPath strings;
    for (int i = 0; i < 6; ++i) {
        const double dWidth = 3.0 - 0.36 * i;
        strings.addRect(QRectF(UNITS / 2.0 + 7.75 * (i - 2.5) - dWidth / 2.0, 0.0, dWidth, UNITS));
    }
    shapes.push_back({strings, QColor(0x9C, 0xC2, 0xF2), QColor(0x5F, 0x90, 0xD4)});

    // The arrow points up to the right, as a needle a little sharp of the mark.
    QTransform turn;
    turn.translate(32.0, 32.0);
    turn.rotate(-60.0);
    const QPainterPath arrow = turn.map(Polygon({{30.0, 0.0},
                                                 {12.5, -9.0},
                                                 {15.0, -2.4},
                                                 {-15.0, -2.4},
                                                 {-19.5, -7.5},
                                                 {-28.5, -7.5},
                                                 {-23.0, 0.0},
                                                 {-28.5, 7.5},
                                                 {-19.5, 7.5},
                                                 {-15.0, 2.4},
                                                 {15.0, 2.4},
                                                 {12.5, 9.0}}));
    QPainterPathStroker stroker;
    stroker.setWidth(4.4);
    stroker.setJoinStyle(Qt::RoundJoin);
    shapes.push_back({(stroker.createStroke(arrow) + arrow).simplified(), QColor(0x22, 0x52, 0xA6),
                      QColor(0x1B, 0x46, 0x94)});
    shapes.push_back({arrow, QColor(0xFF, 0xD4, 0x5E), QColor(0xF5, 0x9A, 0x1C)});
    QPainterPath pivot;
    pivot.addEllipse(QPointF(32.0, 32.0), 5.0, 5.0);
    shapes.push_back({pivot, QColor(0xFF, 0xFF, 0xFF), QColor(0xD8, 0xE4, 0xF4)});
    return shapes;
}

void WritePath(std::ostream& svg, const QPainterPath& path) {
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        switch (element.type) {
            case QPainterPath::MoveToElement:
                svg << 'M';
                break;
            case QPainterPath::LineToElement:
                svg << 'L';
                break;
            case QPainterPath::CurveToElement:
                svg << 'C';
                break;
            case QPainterPath::CurveToDataElement:
                svg << ' ';
                break;
        }
        svg << std::round(element.x * 100.0) / 100.0 << ' ' << std::round(element.y * 100.0) / 100.0;
    }
    svg << 'Z';
}

}  // namespace

void PaintMark(QPainter& painter, double dSide) {
    painter.save();
    painter.scale(dSide / UNITS, dSide / UNITS);
    for (const MarkShape& shape : MarkShapes()) {
        QLinearGradient gradient(0.0, 0.0, 0.0, UNITS);
        gradient.setColorAt(0.0, shape.top);
        gradient.setColorAt(1.0, shape.bottom);
        painter.fillPath(shape.path, gradient);
    }
    painter.restore();
}

QImage DrawIcon(int nSide) {
    return PaintClear(nSide, nSide, [nSide](QPainter& painter) { PaintMark(painter, nSide); });
}

std::string IconAsSvg() {
    const std::vector<MarkShape> shapes = MarkShapes();
    std::ostringstream svg;
    svg << R"(<svg xmlns="http://www.w3.org/2000/svg" width="64" height="64" viewBox="0 0 64 64">)"
        << "\n  <title>Fretvane</title>\n  <defs>\n";
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        svg << R"(    <linearGradient id="g)" << i
            << R"(" gradientUnits="userSpaceOnUse" x1="0" y1="0" x2="0" y2="64"><stop stop-color=")"
            << shapes[i].top.name().toStdString() << R"("/><stop offset="1" stop-color=")"
            << shapes[i].bottom.name().toStdString() << "\"/></linearGradient>\n";
    }
    svg << "  </defs>\n";
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        svg << "  <path fill=\"url(#g" << i << ")\" d=\"";
        WritePath(svg, shapes[i].path);
        svg << "\"/>\n";
    }
    svg << "</svg>\n";
    return svg.str();
}
