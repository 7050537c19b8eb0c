#pragma once

#include "tuning/NoteReading.h"

#include <cstddef>
#include <span>

// The index of the strongest candidate: the lowest one of several that are equally strong, and 0 where all
// lie below the floor of the strength scale.
inline std::size_t FindStrongest(std::span<const NoteReading> candidates) {
    constexpr float BELOW_FLOOR = -100.0F;
    float fBest = BELOW_FLOOR;
    std::size_t nBest = 0;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (candidates[i].strength > fBest) {
            fBest = candidates[i].strength;
            nBest = i;
        }
    }
    return nBest;
}
