#include "artwork/Metal.h"
#include "artwork/Pictures.h"
#include "artwork/Raster.h"

// The coarse indicator's scale: a steel rod with a darker pin across it at each note. The widget tints the
// pin's two outer columns on each side above and below the rod, so there they are ground; where they cross
// the rod they carry it on, with the pin's shadow.

namespace {

constexpr int BAR_WIDTH = 464;
constexpr int BAR_HEIGHT = 5;
constexpr int TICK_WIDTH = 9;
constexpr int TICK_HEIGHT = 24;
constexpr int BAR_TOP = 3;  // of the rod, in the tick's rows
constexpr double PIN_LEFT = 2.0;
constexpr double PIN_RIGHT = 7.0;

Tone Steel(double dLight) {
    return {dLight * 0.93, dLight * 0.95, dLight};
}

Tone RodTone(double y) {
    return Steel(RodLight((y - BAR_HEIGHT / 2.0) / (BAR_HEIGHT / 2.0) * 0.97) * 0.92);
}

Tone PinTone(double x, double y) {
    const double dAcross = (x - (PIN_LEFT + PIN_RIGHT) / 2.0) / ((PIN_RIGHT - PIN_LEFT) / 2.0);
    double dLight = RodLight(dAcross * 0.97) * 0.60;
    if (y < 1.0) {
        dLight += 0.14;
    } else if (y > TICK_HEIGHT - 1.0) {
        dLight *= 0.66;
    }
    return Steel(dLight);
}

}  // namespace

CPicture DrawCoarseBar() {
    return Shade(BAR_WIDTH, BAR_HEIGHT, [](double x, double y) {
        const bool bEnd = x < 1.0 || x > BAR_WIDTH - 1.0;
        return Mix(RodTone(y), Grey(0.3), bEnd ? 0.45 : 0.0);
    });
}

CPicture DrawCoarseTick() {
    return Shade(TICK_WIDTH, TICK_HEIGHT, [](double x, double y) {
        if (x >= PIN_LEFT && x < PIN_RIGHT) {
            return PinTone(x, y);
        }
        if (y < BAR_TOP || y >= BAR_TOP + BAR_HEIGHT) {
            return Grey(1.0);
        }
        const double dShadow = x >= PIN_RIGHT && x < PIN_RIGHT + 1.0 ? 0.5 : x >= PIN_RIGHT ? 0.2 : 0.0;
        return Mix(RodTone(y - BAR_TOP), Grey(0.2), dShadow);
    });
}
