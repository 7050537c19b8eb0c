#include "artwork/Metal.h"
#include "artwork/Pictures.h"
#include "artwork/Raster.h"

#include <cmath>

// A string of the diagram, seen from the front: it leaves its post at the top and runs down out of the
// picture, casting a soft shadow. A wound string shows the turns of its bronze wire, a plain one is bare
// steel.

namespace {

constexpr int STRING_WIDTH = 9;  // its middle under the note that the diagram writes above
constexpr int STRING_HEIGHT = 46;
constexpr double MIDDLE = STRING_WIDTH / 2.0;
constexpr double POST_RADIUS = 4.4;
constexpr double POST_Y = 4.5;
constexpr double WOUND_RADIUS = 2.5;
constexpr double PLAIN_RADIUS = 1.5;
constexpr double TURN = 3.0;       // rows from one turn of the winding to the next
constexpr double TURN_LEAN = 1.2;  // rows that a turn rises across the string

struct Metals {
    Tone string;
    Tone post;
    double dShadow;
};

Metals MetalsOf(StringKind kind) {
    constexpr Tone BRONZE{1.02, 0.78, 0.46};
    constexpr Tone STEEL{1.02, 1.06, 1.12};
    constexpr Tone POST{0.92, 0.92, 0.95};
    switch (kind) {
        case StringKind::Wound:
            return {BRONZE, POST, 0.34};
        case StringKind::Plain:
            return {STEEL, POST, 0.34};
        case StringKind::Disabled:
            break;
    }
    return {Grey(1.0), Grey(1.0), 0.12};
}

Tone Lit(const Tone& metal, double dLight) {
    return {metal.dRed * dLight, metal.dGreen * dLight, metal.dBlue * dLight};
}

Tone PostTone(const Tone& metal, double dx, double dy) {
    const double dRadius = std::hypot(dx, dy);
    if (dRadius > POST_RADIUS - 0.8) {
        return Lit(metal, 0.42);
    }
    const double u = dRadius / POST_RADIUS;
    const double dSlope = -u / std::sqrt(1.0 - u * u) * 0.7;
    return dRadius < 0.01 ? Lit(metal, 0.9)
                          : Lit(metal, SlopeLight(dSlope * dx / dRadius, dSlope * dy / dRadius));
}

Tone StringTone(StringKind kind, const Tone& metal, double u, double y) {
    double dLight = RodLight(u * 0.98);
    if (kind == StringKind::Wound) {
        const double dPhase = (y - u * TURN_LEAN / 2.0) / TURN;
        const double dTurn = 2.0 * (dPhase - std::floor(dPhase)) - 1.0;
        dLight *= 0.30 + 0.86 * std::sqrt(1.0 - dTurn * dTurn * 0.96) - 0.12 * dTurn;
    }
    return Lit(metal, dLight);
}

}  // namespace

CPicture DrawString(StringKind kind) {
    const Metals metals = MetalsOf(kind);
    const double dRadius = kind == StringKind::Wound ? WOUND_RADIUS : PLAIN_RADIUS;
    CPicture picture = Shade(STRING_WIDTH, STRING_HEIGHT, [&](double x, double y) {
        const double dx = x - MIDDLE;
        const double dy = y - POST_Y;
        if (y > POST_Y && std::abs(dx) < dRadius) {
            return StringTone(kind, metals.string, dx / dRadius, y);
        }
        if (std::hypot(dx, dy) < POST_RADIUS) {
            return PostTone(metals.post, dx, dy);
        }
        const double dAway = (dx - dRadius) / 2.4;
        const bool bShadow = y > POST_Y && dAway > 0.0 && dAway < 1.0;
        return Grey(bShadow ? 1.0 - metals.dShadow * (1.0 - dAway) * (1.0 - dAway) : 1.0);
    });
    if (kind == StringKind::Disabled) {
        for (int y = 0; y < STRING_HEIGHT; ++y) {
            for (int x = 0; x < STRING_WIDTH; ++x) {
                const std::uint8_t nGrey = ToByte(0.55 + 0.45 * picture.At(x, y).green / 255.0);
                picture.At(x, y) = {nGrey, nGrey, nGrey};
            }
        }
    }
    return picture;
}
