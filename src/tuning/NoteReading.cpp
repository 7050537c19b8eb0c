#include "tuning/NoteReading.h"

#include <algorithm>
#include <cmath>

namespace {

// The raw strength at the top of the scale.
constexpr double FULL_RAW_STRENGTH = 3000000.0;

}  // namespace

float StrengthFromRaw(float fRawStrength) {
    if (fRawStrength > FULL_RAW_STRENGTH) {
        return STRENGTH_TOP;
    }
    if (!(fRawStrength > 0.0F)) {
        return STRENGTH_FLOOR;
    }
    const auto fStrength = static_cast<float>(10.0 * std::log(fRawStrength / FULL_RAW_STRENGTH));
    return std::max(fStrength, STRENGTH_FLOOR);
}

void NoteReading::Set(int nSemitone, int nOctave, float fCents, float fStrength, float fFrequency) {
    StringNote::Set(nSemitone, nOctave);
    cents = fCents;
    strength = fStrength;
    frequency = fFrequency;
}

NoteReading NoteReading::Empty(int nSemitone) {
    NoteReading empty;
    empty.Set(nSemitone, 0, 0.0F, STRENGTH_FLOOR, 0.0F);
    return empty;
}
