#pragma once

#include "platform/signal/AlignedArray.h"
#include "tuning/NoteReading.h"

#include <memory>

// The notes of equal temperament that an analysis can name, in rising order of pitch. Unchanging once built,
// so that any number of threads may read it.
class CNoteGrid {
public:
    // Whether fA lies within these limits, and they are frequencies.
    static bool CanHangOn(float fA, float fLowestFrequency, int nSampleRate);

    // All notes from fLowestFrequency to the sample rate (Hz) or just past both, fA being the frequency of
    // A4. Null when it cannot hang on fA, or without memory.
    static std::unique_ptr<const CNoteGrid> Build(float fA, float fLowestFrequency, int nSampleRate);

    // The note whose frequency lies nearest in Hz, the upper one on a tie, and the cents from it; a frequency
    // past either end reads as the note at that end. The reading's strength is that of fRawStrength.
    NoteReading MakeReading(float fFrequency, float fRawStrength) const;

    int GetNoteCount() const { return m_nNoteCount; }
    // How many notes lie below the A4, and so the index of the A4.
    int GetNotesBelowA() const { return m_nNotesBelowA; }
    float GetFrequency(int nNote) const { return m_pfGridFrequency[nNote]; }
    int GetOctave(int nNote) const { return m_pnGridOctave[nNote]; }
    int GetSemitone(int nNote) const { return m_pnGridSemitone[nNote]; }

private:
    CNoteGrid() = default;
    bool Fill(float fA, float fLowestFrequency, int nSampleRate);
    int FindNearest(float fFrequency) const;

    CAlignedArray<float> m_pfGridFrequency;
    CAlignedArray<int> m_pnGridOctave;
    CAlignedArray<int> m_pnGridSemitone;
    int m_nNotesBelowA = 0;
    int m_nNoteCount = 0;
};
