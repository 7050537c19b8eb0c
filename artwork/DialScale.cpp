#include "artwork/Accidentals.h"
#include "artwork/Pictures.h"
#include "artwork/Raster.h"
#include "artwork/Typeface.h"

#include <QtGui/QTransform>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

// The scale that the needle's tip follows: a circle around the pivot, 0.6 degrees a cent. The tip with its
// round end reaches 184.5 pixels from the pivot. Ticks hang from a common circle further out, the longest
// down to the tip: at the tip itself cents are less than two pixels apart, too close to tell one from the
// next.

namespace {

constexpr int SCALE_WIDTH = 236;
constexpr int SCALE_HEIGHT = 69;
constexpr double PIVOT_X = 118.5;  // the middle of the dial's column 120, two columns in
constexpr double PIVOT_Y = 211.5;  // the middle of its row 270, 59 rows down
constexpr double DEGREES_A_CENT = 0.6;
constexpr int LAST_CENT = 50;
constexpr int IN_TUNE_CENTS = 5;

constexpr double TICK_TOP = 196.5;
constexpr double CENT_FOOT = 191.5;
constexpr double FIVE_FOOT = 188.5;
constexpr double TEN_FOOT = 185.5;
constexpr double NUMBER_RADIUS = 205.0;
constexpr double NUMBER_CAP = 8.0;

const QColor g_ink(0x30, 0x34, 0x3C);
const QColor g_fine(0x8C, 0x92, 0x9C);
const QColor g_inTune(0xC4, 0xEB, 0xC8);
const QColor g_side(0x9A, 0xA0, 0xAA);

double AngleOf(double dCents) {
    return dCents * DEGREES_A_CENT * std::numbers::pi / 180.0;
}

QPointF OnCircle(double dCents, double dRadius) {
    const double dAngle = AngleOf(dCents);
    return {PIVOT_X + std::sin(dAngle) * dRadius, PIVOT_Y - std::cos(dAngle) * dRadius};
}

QRectF Circle(double dRadius) {
    return {PIVOT_X - dRadius, PIVOT_Y - dRadius, 2.0 * dRadius, 2.0 * dRadius};
}

// A piece of a ring between two cents.
QPainterPath Ring(double dFrom, double dTo, double dInner, double dOuter) {
    const double dStart = 90.0 - dFrom * DEGREES_A_CENT;
    const double dSweep = (dFrom - dTo) * DEGREES_A_CENT;
    QPainterPath path;
    path.arcMoveTo(Circle(dOuter), dStart);
    path.arcTo(Circle(dOuter), dStart, dSweep);
    path.arcTo(Circle(dInner), dStart + dSweep, -dSweep);
    path.closeSubpath();
    return path;
}

// Up here cents are two pixels apart: each takes whole columns, row by row, so that there is always ground
// between two of them, where smoothing would wash them into one grey.
void PaintCents(QPainter& painter) {
    for (int y = 0; y < SCALE_HEIGHT; ++y) {
        const double dDown = PIVOT_Y - (y + 0.5);
        for (int nCents = -LAST_CENT; nCents <= LAST_CENT; ++nCents) {
            const double dRadius = dDown / std::cos(AngleOf(nCents));
            const double dCover = std::clamp(dRadius - CENT_FOOT + 0.5, 0.0, 1.0) *
                                  std::clamp(TICK_TOP - dRadius + 0.5, 0.0, 1.0);
            if (dCover > 0.0) {
                QColor color = nCents % 5 == 0 ? g_ink : g_fine;
                color.setAlphaF(static_cast<float>(dCover));
                const double x = PIVOT_X + dDown * std::tan(AngleOf(nCents));
                painter.fillRect(QRectF(std::floor(x), y, 1.0, 1.0), color);
            }
        }
    }
}

// The lower part of a tick that is longer than those of single cents.
void PaintFoot(QPainter& painter, int nCents) {
    const bool bLong = nCents % 10 == 0 || std::abs(nCents) == 25;
    const double dWidth = nCents == 0 ? 3.0 : bLong ? 1.6 : 1.2;
    painter.setPen(QPen(g_ink, dWidth, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(OnCircle(nCents, bLong ? TEN_FOOT : FIVE_FOOT), OnCircle(nCents, CENT_FOOT));
    painter.setPen(Qt::NoPen);
}

void PaintNumber(QPainter& painter, int nCents) {
    const QPainterPath text = TextOutline(QString::number(std::abs(nCents)), QFont::Bold, NUMBER_CAP);
    const QPointF centre = OnCircle(nCents, NUMBER_RADIUS);
    // Whole rows keep the small figures crisp.
    const double yBase = std::round(centre.y() + NUMBER_CAP / 2.0);
    painter.fillPath(text.translated(centre.x() - text.boundingRect().width() / 2.0, yBase), g_ink);
}

// Which side is too low and which too high, in the players' own signs, in the free corners.
void PaintSide(QPainter& painter, const QPainterPath& sign, double dCentreX) {
    constexpr double SIGN_SCALE = 0.5;
    constexpr double SIGN_TOP = 8.0;
    const QPainterPath small = QTransform::fromScale(SIGN_SCALE, SIGN_SCALE).map(sign);
    const QRectF box = small.boundingRect();
    painter.fillPath(small.translated(dCentreX - box.center().x(), SIGN_TOP - box.top()), g_side);
}

}  // namespace

CPicture DrawDialScale() {
    return Paint(SCALE_WIDTH, SCALE_HEIGHT, Qt::white, [](QPainter& painter) {
        painter.fillPath(Ring(-IN_TUNE_CENTS, IN_TUNE_CENTS, TEN_FOOT, TICK_TOP), g_inTune);
        PaintCents(painter);
        for (int nCents = -LAST_CENT; nCents <= LAST_CENT; nCents += 5) {
            PaintFoot(painter, nCents);
        }
        PaintSide(painter, FlatOutline(), OnCircle(-LAST_CENT, NUMBER_RADIUS).x());
        PaintSide(painter, SharpOutline(), OnCircle(LAST_CENT, NUMBER_RADIUS).x());
        for (const int nCents : {0, 10, 25, 50}) {
            PaintNumber(painter, nCents);
            if (nCents != 0) {
                PaintNumber(painter, -nCents);
            }
        }
    });
}
