#pragma once

#include "platform/base/Types.h"

#include <array>

inline constexpr int SEMITONES = 12;

// The names of the semitones, from C. The two flats and three sharps are the only names in use.
inline constexpr std::array<const char*, SEMITONES> SEMITONE_NAMES = {"C",  "C#", "D",  "Eb", "E",  "F",
                                                                      "F#", "G",  "G#", "A",  "Bb", "B"};
// The semitone of the A.
inline constexpr int SEMITONE_A = 9;

// A tuning's octaves are indices 0 to 2; the octave number that people read (scientific pitch notation: every
// octave starts at C, A4 is the A frequency) is the index plus 2.
inline constexpr int TUNING_OCTAVES = 3;
inline constexpr int OCTAVE_INDEX_TO_NUMBER = 2;

inline constexpr float DEFAULT_A_FREQUENCY = 440.0F;
inline constexpr float LOWEST_A_FREQUENCY = 430.0F;
inline constexpr float HIGHEST_A_FREQUENCY = 450.0F;

// The note of one string: a value, safe to copy anywhere.
struct StringNote {
    int semitone = 0;  // 0 to 11 from C
    int octave = 0;    // a tuning's octave index; NoteReading keeps the octave number here

    // Stores both. A negative octave is stored as 0; the semitone is taken as it is.
    void Set(int nSemitone, int nOctave);
    bool IsNote(int nSemitone, int nOctave) const { return semitone == nSemitone && octave == nOctave; }
    // The name and the octave number of a tuning's note: "E2", "F#3". A semitone outside 0 to 11 has no name.
    void GetText(CString& strOut) const;
    // Frequency in Hz of a tuning's note in equal temperament, fA being the frequency of A4 in Hz.
    float GetFrequency(float fA) const;

    friend bool operator==(const StringNote&, const StringNote&) = default;
};
