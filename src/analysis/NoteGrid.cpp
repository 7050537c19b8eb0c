#include "analysis/NoteGrid.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace {

// The A4 seen from the C of its octave, and that octave.
constexpr int OCTAVE_OF_A = 4;

// 1/12 of an octave in single precision, as the grid is defined with.
constexpr float OCTAVES_PER_SEMITONE = 0.0833333358F;

constexpr double CENTS_PER_OCTAVE = 1200.0;

}  // namespace

bool CNoteGrid::CanHangOn(float fA, float fLowestFrequency, int nSampleRate) {
    return fLowestFrequency > 0.0F && fA >= fLowestFrequency && fA <= static_cast<float>(nSampleRate);
}

std::unique_ptr<const CNoteGrid> CNoteGrid::Build(float fA, float fLowestFrequency, int nSampleRate) {
    if (!CanHangOn(fA, fLowestFrequency, nSampleRate)) {
        return nullptr;
    }
    std::unique_ptr<CNoteGrid> pGrid(new (std::nothrow) CNoteGrid);
    if (!pGrid || !pGrid->Fill(fA, fLowestFrequency, nSampleRate)) {
        return nullptr;
    }
    return pGrid;
}

bool CNoteGrid::Fill(float fA, float fLowestFrequency, int nSampleRate) {
    const double dA = fA;
    m_nNotesBelowA = static_cast<int>(std::ceil(SEMITONES * std::log2(dA / fLowestFrequency)));
    const int nNotesAboveA = static_cast<int>(std::ceil(SEMITONES * std::log2(nSampleRate / dA)));
    m_nNoteCount = m_nNotesBelowA + nNotesAboveA + 1;
    if (!m_pfGridFrequency.Allocate(m_nNoteCount) || !m_pnGridOctave.Allocate(m_nNoteCount) ||
        !m_pnGridSemitone.Allocate(m_nNoteCount)) {
        return false;
    }
    for (int i = 0; i < m_nNoteCount; ++i) {
        const int nFromA = i - m_nNotesBelowA;
        const int nFromC = nFromA + SEMITONE_A;
        const int nRemainder = nFromC % SEMITONES;
        m_pnGridSemitone[i] = nRemainder < 0 ? nRemainder + SEMITONES : nRemainder;
        m_pnGridOctave[i] = OCTAVE_OF_A + nFromC / SEMITONES - (nRemainder < 0 ? 1 : 0);
        m_pfGridFrequency[i] =
            static_cast<float>(dA * std::exp2(nFromA * static_cast<double>(OCTAVES_PER_SEMITONE)));
    }
    return true;
}

int CNoteGrid::FindNearest(float fFrequency) const {
    const auto grid = m_pfGridFrequency.All();
    const auto itUpper = std::lower_bound(grid.begin(), grid.end(), fFrequency);
    const int nUpper = std::clamp(static_cast<int>(itUpper - grid.begin()), 1, std::max(m_nNoteCount - 1, 1));
    if (nUpper >= m_nNoteCount) {
        return 0;
    }
    const double dDown = static_cast<double>(fFrequency) - grid[static_cast<std::size_t>(nUpper - 1)];
    const double dUp = static_cast<double>(grid[static_cast<std::size_t>(nUpper)]) - fFrequency;
    return dDown < dUp ? nUpper - 1 : nUpper;
}

NoteReading CNoteGrid::MakeReading(float fFrequency, float fRawStrength) const {
    const int nNote = FindNearest(fFrequency);
    const double dRatio = static_cast<double>(fFrequency) / m_pfGridFrequency[nNote];
    NoteReading reading;
    reading.Set(m_pnGridSemitone[nNote], m_pnGridOctave[nNote],
                static_cast<float>(CENTS_PER_OCTAVE * std::log2(dRatio)), StrengthFromRaw(fRawStrength),
                fFrequency);
    return reading;
}
