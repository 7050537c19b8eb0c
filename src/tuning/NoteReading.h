#pragma once

#include "tuning/StringNote.h"

// The strength scale: 10 ln(a / 3000000), from the floor to 0.
inline constexpr float STRENGTH_FLOOR = -90.0F;
inline constexpr float STRENGTH_TOP = 0.0F;

// Turns a raw strength, a sum of unscaled FFT magnitudes of 16-bit samples, into the strength scale.
// Nothing heard (0) is the floor.
float StrengthFromRaw(float fRawStrength);

// A pitch that was heard: a candidate of the analysis, or what the display shows. `octave` holds the octave
// number here, not a tuning's index.
struct NoteReading : StringNote {
    float cents = 0.0F;      // distance from the equal-tempered note, positive when sharp
    float strength = 0.0F;   // on the strength scale; a raw strength while notes are being weighed
    float frequency = 0.0F;  // Hz

    // Stores all five. A negative octave is stored as 0.
    void Set(int nSemitone, int nOctave, float fCents, float fStrength, float fFrequency);

    // What stands in a semitone's place when no note was heard there.
    static NoteReading Empty(int nSemitone);

    friend bool operator==(const NoteReading&, const NoteReading&) = default;
};
