#pragma once

#include "platform/base/Types.h"
#include "tuning/StringNote.h"

#include <array>
#include <cstddef>

inline constexpr std::size_t STRINGS = 6;

// A named set of six string notes: a value, copied whole wherever it is passed.
struct Tuning {
    std::array<StringNote, STRINGS> m_strings;  // 0 is the lowest string of the standard tuning
    CString m_strName;                          // UTF-8
    DWORD m_dwTag = 0;                          // a number that is only carried along

    // True if the six notes are the same; name and tag don't count.
    bool IsEqual(const Tuning& other) const { return m_strings == other.m_strings; }
    // True if all six notes lie within what a tuning can hold: semitone 0 to 11, octave index 0 to 2.
    bool IsInRange() const;

    // "Standard E": E2 A2 D3 G3 B3 E4, tag 0.
    static Tuning StandardE();
};
