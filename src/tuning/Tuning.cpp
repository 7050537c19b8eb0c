#include "tuning/Tuning.h"

#include <algorithm>

bool Tuning::IsInRange() const {
    return std::all_of(m_strings.begin(), m_strings.end(), [](const StringNote& note) {
        return note.semitone >= 0 && note.semitone < SEMITONES && note.octave >= 0 &&
               note.octave < TUNING_OCTAVES;
    });
}

Tuning Tuning::StandardE() {
    Tuning tuning;
    tuning.m_strings = {{{4, 0}, {9, 0}, {2, 1}, {7, 1}, {11, 1}, {4, 2}}};
    tuning.m_strName = "Standard E";
    return tuning;
}
