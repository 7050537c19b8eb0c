#pragma once

#include "tuning/NoteReading.h"

#include <array>
#include <span>

// Turns the stream of strongest candidates, one for each block, into the steady reading of the display:
// decides whether a note sounds, averages its pitch over a time that grows while the pitch is restless, keeps
// the last cent from flickering, and holds the last good reading when no note is found.
//
// A pitch is one number here, its position: cents above the C of octave 0, plus 50, so that a note spans a
// whole hundred and an average may cross from one note to the next.
//
// Every sum is rounded to single precision at each step: the thresholds of the adaptation lie near the
// resolution of a float. One thread; nothing allocates. Its size is fixed, some 24 KB.
class CNoteTracker {
public:
    // One frame. candidate: the block's strongest, empty when there was no note. fHop: samples from the block
    // before to this one. nSampleRate: Hz. fLevel: the block's level, 0 to 1. Gives the reading to show; its
    // cents stand 0.5 above the average unless the last cent was held still.
    NoteReading Update(NoteReading candidate, float fHop, int nSampleRate, float fLevel);

    // Whether the last Update gave a held reading instead of a live one.
    bool IsHolding() const { return m_bHolding; }
    // The level averaged over the same blocks as the pitch, 0 to 1; goes on while holding.
    float GetLevel() const { return m_fAverageLevel; }

private:
    static constexpr int RING = 1024;
    using Ring = std::array<float, RING>;

    static int Back(int nEntry) { return nEntry == 0 ? RING - 1 : nEntry - 1; }
    // Entries of a ring in order of time: those that stand before its end, and those from its start.
    struct CStretch {
        std::span<const float> older;
        std::span<const float> newer;
    };
    static CStretch StretchTo(const Ring& ring, int nNewest, int nCount);
    float MeasureWay(int nFrames) const;
    bool IsStable(float fPosition, int nStableFrames) const;
    void SwitchNote(bool bStable, float fStrength, int nSettleFrames, int nStableFrames);
    void Average(int nSampleRate);
    void MeasureRoughness(int nSettleFrames);
    void AdaptAverageTime(int nSettleFrames);
    void CalmLastCent();
    void BuildReading();

    bool m_bHolding = false;
    bool m_bHoldNext = false;
    Ring m_afPosition{};
    Ring m_afSmoothed{};
    Ring m_afStrength{};
    Ring m_afFrequency{};
    Ring m_afHop{};
    Ring m_afLevel{};
    int m_nWrite = 0;   // the newest entry
    int m_nFilled = 0;  // how many of the newest entries count
    float m_fAverageTime = 0.05F;
    float m_fSettleTime = 0.1F;
    float m_fStableTime = 0.03F;
    float m_fAverage = 0.0F;
    float m_fAverageStrength = 0.0F;
    float m_fAverageFrequency = 0.0F;
    float m_fAverageLevel = 0.0F;
    float m_fRoughness = 0.0F;  // cents per frame
    int m_nSettle = 0;
    NoteReading m_current;
    NoteReading m_lastReading;
    std::array<float, 4> m_afAverageTimes = {0.05F, 0.1F, 0.25F, 0.5F};
    int m_nAverageStep = 0;
    // The position in whole cents now and before, and for how many frames each has stood. At first three
    // values that no position takes.
    int m_nCentNow = -200;
    int m_nCentPrev = -100;
    int m_nCentPrev2 = -300;
    int m_nRun = 0;
    int m_nRunPrev = 0;
    int m_nRunPrev2 = 0;
};
