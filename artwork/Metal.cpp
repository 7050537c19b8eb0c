#include "artwork/Metal.h"

#include <algorithm>
#include <cmath>

namespace {

// A diffuse part, a soft gleam and the grey of the surroundings, so that no side is black.
double Reflect(double fFacing, double fHalfway) {
    return 0.26 + 0.52 * std::max(fFacing, 0.0) + 0.30 * std::pow(std::max(fHalfway, 0.0), 18.0);
}

}  // namespace

double RodLight(double u) {
    constexpr double LIGHT_X = -0.50;
    constexpr double LIGHT_Z = 0.866;
    constexpr double HALF_X = -0.26;
    constexpr double HALF_Z = 0.966;
    const double fAcross = std::clamp(u, -1.0, 1.0);
    const double fUp = std::sqrt(1.0 - fAcross * fAcross);
    // The sides see less of the room than the top: that sets a bright rod off from a white ground.
    const double fRoom = 0.55 + 0.45 * fUp;
    return fRoom * Reflect(fAcross * LIGHT_X + fUp * LIGHT_Z, fAcross * HALF_X + fUp * HALF_Z);
}

double SlopeLight(double fSlopeX, double fSlopeY) {
    constexpr double LIGHT_X = -0.38;
    constexpr double LIGHT_Y = -0.52;
    constexpr double LIGHT_Z = 0.765;
    constexpr double HALF_X = -0.20;
    constexpr double HALF_Y = -0.28;
    constexpr double HALF_Z = 0.939;
    const double fLength = std::sqrt(fSlopeX * fSlopeX + fSlopeY * fSlopeY + 1.0);
    return Reflect((-fSlopeX * LIGHT_X - fSlopeY * LIGHT_Y + LIGHT_Z) / fLength,
                   (-fSlopeX * HALF_X - fSlopeY * HALF_Y + HALF_Z) / fLength);
}
