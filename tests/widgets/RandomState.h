#pragma once

#include "widgets/WidgetSet.h"

#include <random>

// What the widgets may be given, reproducibly.
class CRandomState {
public:
    explicit CRandomState(unsigned nSeed) : m_random(nSeed) {}

    int Number(int nLow, int nHigh) { return std::uniform_int_distribution(nLow, nHigh)(m_random); }
    COLORREF Color() { return static_cast<COLORREF>(Number(0, 0xFFFFFF)); }

    // The next reading, with room to spare: cents end near 51. True if the needle has another colour.
    bool ChangeReading(DisplayState& state) {
        state.fLevel = static_cast<float>(Number(-10, 110)) / 100.0F;
        if (Number(0, 3) > 0) {
            state.fHz = Number(0, 9) == 0 ? 0.0F : static_cast<float>(Number(30, 800));
            state.nCents = Number(-55, 55);
            state.nSemitone = Number(0, SEMITONES - 1);
        }
        const bool bColor = Number(0, 3) == 0;
        if (bColor) {
            state.clrDialNeedle = Color();
        }
        return bColor;
    }
    void ChangeColors(DisplayState& state) {
        for (COLORREF* const pColor : {&state.clrText, &state.clrHigh, &state.clrLow, &state.clrNeedle}) {
            *pColor = Color();
        }
    }
    void ChangeTuning(DisplayState& state) {
        state.fA = static_cast<float>(Number(4300, 4500)) / 10.0F;
        for (StringNote& note : state.tuning.m_strings) {
            note.Set(Number(0, SEMITONES - 1), Number(0, 2));
        }
    }

private:
    std::mt19937 m_random;
};
