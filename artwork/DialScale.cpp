#include "artwork/Pictures.h"
#include "artwork/Raster.h"
#include "artwork/Typeface.h"

#include <QtGui/QTransform>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numbers>

// The scale that the needle's tip follows: a circle around the pivot, 0.6 degrees a cent. The tip with its
// round end reaches 184.5 pixels from the pivot; the ticks stand just outside.

namespace {

constexpr int SCALE_WIDTH = 236;
constexpr int SCALE_HEIGHT = 69;
constexpr double PIVOT_X = 118.5;  // the middle of the dial's column 120, two columns in
constexpr double PIVOT_Y = 211.5;  // the middle of its row 270, 59 rows down
constexpr double DEGREES_A_CENT = 0.6;
constexpr int LAST_CENT = 50;
constexpr int IN_TUNE_CENTS = 5;

constexpr double TICK_FOOT = 185.5;
constexpr double NUMBER_RADIUS = 204.5;
constexpr double NUMBER_CAP = 8.0;

const QColor g_ink(0x30, 0x34, 0x3C);
const QColor g_fine(0x8C, 0x92, 0x9C);
const QColor g_inTune(0xC4, 0xEB, 0xC8);
const QColor g_side(0x9A, 0xA0, 0xAA);

QPointF OnCircle(double fCents, double fRadius) {
    const double fAngle = fCents * DEGREES_A_CENT * std::numbers::pi / 180.0;
    return {PIVOT_X + std::sin(fAngle) * fRadius, PIVOT_Y - std::cos(fAngle) * fRadius};
}

QRectF Circle(double fRadius) {
    return {PIVOT_X - fRadius, PIVOT_Y - fRadius, 2.0 * fRadius, 2.0 * fRadius};
}

// A piece of a ring between two cents.
QPainterPath Ring(double fFrom, double fTo, double fInner, double fOuter) {
    const double fStart = 90.0 - fFrom * DEGREES_A_CENT;
    const double fSweep = (fFrom - fTo) * DEGREES_A_CENT;
    QPainterPath path;
    path.arcMoveTo(Circle(fOuter), fStart);
    path.arcTo(Circle(fOuter), fStart, fSweep);
    path.arcTo(Circle(fInner), fStart + fSweep, -fSweep);
    path.closeSubpath();
    return path;
}

void PaintTick(QPainter& painter, int nCents) {
    double fLength = 4.5;
    double fWidth = 0.8;
    QColor color = g_fine;
    if (nCents % 10 == 0 || std::abs(nCents) == 25) {
        fLength = 11.0;
        fWidth = 1.6;
        color = g_ink;
    } else if (nCents % 5 == 0) {
        fLength = 7.5;
        fWidth = 1.2;
        color = g_ink;
    }
    if (nCents == 0) {
        fWidth = 2.4;
    }
    painter.setPen(QPen(color, fWidth, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(OnCircle(nCents, TICK_FOOT), OnCircle(nCents, TICK_FOOT + fLength));
    painter.setPen(Qt::NoPen);
}

void PaintNumber(QPainter& painter, int nCents) {
    const QPainterPath text = TextOutline(QString::number(std::abs(nCents)), QFont::Bold, NUMBER_CAP);
    const QPointF centre = OnCircle(nCents, NUMBER_RADIUS);
    // Whole rows keep the small figures crisp.
    const double yBase = std::round(centre.y() + NUMBER_CAP / 2.0);
    painter.fillPath(text.translated(centre.x() - text.boundingRect().width() / 2.0, yBase), g_ink);
}

}  // namespace

CPicture DrawDialScale() {
    return Paint(SCALE_WIDTH, SCALE_HEIGHT, Qt::white, [](QPainter& painter) {
        painter.fillPath(Ring(-IN_TUNE_CENTS, IN_TUNE_CENTS, TICK_FOOT, TICK_FOOT + 11.0), g_inTune);
        for (int nCents = -LAST_CENT; nCents <= LAST_CENT; ++nCents) {
            PaintTick(painter, nCents);
        }
        for (const int nCents : {0, 10, 25, 50}) {
            PaintNumber(painter, nCents);
            if (nCents != 0) {
                PaintNumber(painter, -nCents);
            }
        }
    });
}
