#include "widgets/NeedleGeometry.h"

#include <cmath>

namespace {

constexpr double TIP_RADIUS = 182.0;
constexpr double BASE_RADIUS = 30.0;

// The dial's own constants: a single-precision factor and short forms of pi / 180 and pi. They decide on
// which pixel an offset is cut, at 0 cents already, so they aren't to be made more exact.
constexpr double DEGREES_PER_CENT = -0.6F;
constexpr double RADIANS_PER_DEGREE = 0.0174525;
constexpr double UPRIGHT = 3.1415;

// From the pivot to the left edge of the strip, past the tip: wider on the left for a needle that leans
// right.
constexpr int STRIP_FROM_TIP_SHARP = NEEDLE_PIVOT.x - 20;
constexpr int STRIP_FROM_TIP = NEEDLE_PIVOT.x - 10;

}  // namespace

NeedleGeometry GetNeedleGeometry(int nCents) {
    const double dAngle = nCents * DEGREES_PER_CENT * RADIANS_PER_DEGREE + UPRIGHT;
    const int nTipX = static_cast<int>(std::sin(dAngle) * TIP_RADIUS);
    const int nTipY = static_cast<int>(std::cos(dAngle) * TIP_RADIUS);
    const int nBaseX = static_cast<int>(std::sin(dAngle) * BASE_RADIUS);
    const int nBaseY = static_cast<int>(std::cos(dAngle) * BASE_RADIUS);
    return {.ptTip = {NEEDLE_PIVOT.x + nTipX, NEEDLE_PIVOT.y + nTipY},
            .ptBase = {NEEDLE_PIVOT.x + nBaseX, NEEDLE_PIVOT.y + nBaseY},
            .nStripX = nTipX + (nCents > 0 ? STRIP_FROM_TIP_SHARP : STRIP_FROM_TIP)};
}
