#include "tuning/StringNote.h"

#include "platform/base/String.h"

#include <algorithm>
#include <cmath>

namespace {

// Twelve of these make an octave.
constexpr double SEMITONE_RATIO = 1.0594630241394043;

}  // namespace

void StringNote::Set(int nSemitone, int nOctave) {
    semitone = nSemitone;
    octave = std::max(nOctave, 0);
}

void StringNote::GetText(CString& strOut) const {
    const bool bNamed = semitone >= 0 && semitone < SEMITONES;
    const char* szName = bNamed ? SEMITONE_NAMES[static_cast<std::size_t>(semitone)] : "";
    strOut = FormatText("%s%i", szName, octave + OCTAVE_INDEX_TO_NUMBER);
}

float StringNote::GetFrequency(float fA) const {
    const double dOctaveFactor = std::ldexp(1.0, octave - (TUNING_OCTAVES - 1));
    return static_cast<float>(fA * dOctaveFactor * std::pow(SEMITONE_RATIO, semitone - SEMITONE_A));
}
