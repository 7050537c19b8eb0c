#include "artwork/Metal.h"
#include "artwork/Pictures.h"
#include "artwork/Raster.h"

#include <algorithm>
#include <cmath>

// The hub that the needle comes out of: the visible part of a turned metal cap. It fills the dial from row
// 232 to the last row above the frame, centred on the pivot's column, and covers the needle's foot at every
// angle. White is what the dial shows through, so no metal is quite white.

namespace {

constexpr int HUB_WIDTH = 59;
constexpr int HUB_HEIGHT = 23;
constexpr double CENTRE_X = HUB_WIDTH / 2.0;
constexpr double RADIUS = 30.4;
constexpr double CENTRE_Y = RADIUS;
constexpr double BRIGHTEST = 0.97;

// The edge lies partly on white and partly on the needle: blended against a light grey and cut where little
// of the hub is left, it is smooth on the one and leaves no white fringe on the other.
constexpr double SURROUNDINGS = 0.80;
constexpr double LEAST_COVER = 0.35;

constexpr double RIM = 6.0;      // a round bead
constexpr double GROOVE = 1.2;   // between bead and face
constexpr double BOSS = 12.5;    // the raised middle
constexpr double OUTLINE = 0.9;  // a dark edge against the white ground

// Slope outward along the radius.
double SlopeAt(double dRadius) {
    const double dFace = RADIUS - OUTLINE - RIM - GROOVE;
    if (dRadius > dFace + GROOVE) {
        const double u = std::clamp((dRadius - (RADIUS - OUTLINE - RIM / 2.0)) / (RIM / 2.0), -0.93, 0.93);
        return -u / std::sqrt(1.0 - u * u) * 0.8;
    }
    if (dRadius > BOSS) {
        return -0.10;
    }
    const double u = std::clamp(dRadius / BOSS, 0.0, 0.96);
    return -u / std::sqrt(1.0 - u * u) * 0.55;
}

Tone HubTone(double x, double y) {
    const double dx = x - CENTRE_X;
    const double dy = y - CENTRE_Y;
    const double dRadius = std::hypot(dx, dy);
    if (dRadius > RADIUS) {
        return Grey(SURROUNDINGS);
    }
    if (dRadius > RADIUS - OUTLINE) {
        return Grey(0.30);
    }
    const double dFace = RADIUS - OUTLINE - RIM - GROOVE;
    if (dRadius > dFace && dRadius <= dFace + GROOVE) {
        return Grey(0.34);
    }
    const double dSlope = SlopeAt(dRadius);
    double dLight = SlopeLight(dSlope * dx / dRadius, dSlope * dy / dRadius);
    if (dRadius > BOSS && dRadius <= dFace) {
        // Turned on a lathe: bright and dark fans around the middle.
        const double dAngle = std::atan2(dy, dx);
        dLight += 0.10 * std::cos(2.0 * (dAngle + 2.05)) - 0.04;
    }
    return Grey(std::min(dLight, BRIGHTEST));
}

}  // namespace

CPicture DrawHub() {
    QPainterPath disc;
    disc.addEllipse(QPointF(CENTRE_X, CENTRE_Y), RADIUS, RADIUS);
    const CField cover = Cover(disc, HUB_WIDTH, HUB_HEIGHT);
    CPicture hub = Shade(HUB_WIDTH, HUB_HEIGHT, HubTone);
    for (int y = 0; y < HUB_HEIGHT; ++y) {
        for (int x = 0; x < HUB_WIDTH; ++x) {
            if (cover.Mean(x, y) < LEAST_COVER) {
                hub.At(x, y) = Rgb{};
            }
        }
    }
    return hub;
}
