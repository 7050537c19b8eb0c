#include "artwork/Metal.h"

#include <algorithm>
#include <cmath>

namespace {

// A diffuse part, a soft gleam and the grey of the surroundings, so that no side is black.
double Reflect(double dFacing, double dHalfway) {
    return 0.26 + 0.52 * std::max(dFacing, 0.0) + 0.30 * std::pow(std::max(dHalfway, 0.0), 18.0);
}

}  // namespace

double RodLight(double u) {
    constexpr double LIGHT_X = -0.50;
    constexpr double LIGHT_Z = 0.866;
    constexpr double HALF_X = -0.26;
    constexpr double HALF_Z = 0.966;
    const double dAcross = std::clamp(u, -1.0, 1.0);
    const double dUp = std::sqrt(1.0 - dAcross * dAcross);
    // The sides see less of the room than the top: that sets a bright rod off from a white ground.
    const double dRoom = 0.55 + 0.45 * dUp;
    return dRoom * Reflect(dAcross * LIGHT_X + dUp * LIGHT_Z, dAcross * HALF_X + dUp * HALF_Z);
}

double SlopeLight(double dSlopeX, double dSlopeY) {
    constexpr double LIGHT_X = -0.38;
    constexpr double LIGHT_Y = -0.52;
    constexpr double LIGHT_Z = 0.765;
    constexpr double HALF_X = -0.20;
    constexpr double HALF_Y = -0.28;
    constexpr double HALF_Z = 0.939;
    const double dLength = std::sqrt(dSlopeX * dSlopeX + dSlopeY * dSlopeY + 1.0);
    return Reflect((-dSlopeX * LIGHT_X - dSlopeY * LIGHT_Y + LIGHT_Z) / dLength,
                   (-dSlopeX * HALF_X - dSlopeY * HALF_Y + HALF_Z) / dLength);
}
