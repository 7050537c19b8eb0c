#include "analysis/NoteTracker.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr int CENTS_PER_SEMITONE = 100;
constexpr int CENTS_PER_OCTAVE = CENTS_PER_SEMITONE * SEMITONES;
constexpr double HALF_SEMITONE = 50.0;

// How far two frames of one note may lie apart, cents.
constexpr double STABLE_RANGE = 60.0;
// A note comes on above the one strength and goes off below the other.
constexpr double ON_STRENGTH = -27.0;
constexpr double OFF_STRENGTH = -30.0;

// The averaging time shrinks below the one roughness and grows above the other, cents per frame.
constexpr double CALM_ROUGHNESS = 0.005;
constexpr double RESTLESS_ROUGHNESS = 0.01;
// Roughness is measured over this many frames at least.
constexpr int LEAST_ROUGHNESS_FRAMES = 5;

// Turns the shown cents from cut to rounded.
constexpr double ROUNDING = 0.5;

// A count of frames, within what an int holds however short the frames are.
int CountFrames(double dFrames) {
    constexpr double MOST_FRAMES = 1.0e8;
    return static_cast<int>(std::clamp(dFrames, 0.0, MOST_FRAMES));
}

}  // namespace

NoteReading CNoteTracker::Update(NoteReading candidate, float fHop, int nSampleRate, float fLevel) {
    const auto fFrameTime = static_cast<float>(fHop / static_cast<double>(nSampleRate));
    const int nSettleFrames = CountFrames(static_cast<double>(m_fSettleTime) / fFrameTime);
    const int nStableFrames = CountFrames(static_cast<double>(m_fStableTime) / fFrameTime);
    const auto fPosition =
        static_cast<float>(static_cast<double>(CENTS_PER_SEMITONE) *
                               (candidate.semitone + SEMITONES * static_cast<double>(candidate.octave)) +
                           candidate.cents + HALF_SEMITONE);

    m_nWrite = (m_nWrite + 1) % RING;
    m_nFilled = std::min(m_nFilled + 1, RING);
    const auto nNewest = static_cast<std::size_t>(m_nWrite);
    m_afPosition[nNewest] = fPosition;
    m_afStrength[nNewest] = candidate.strength;
    m_afFrequency[nNewest] = candidate.frequency;
    m_afHop[nNewest] = fHop;
    m_afLevel[nNewest] = fLevel;

    SwitchNote(IsStable(fPosition, nStableFrames), candidate.strength, nSettleFrames, nStableFrames);
    Average(nSampleRate);
    MeasureRoughness(nSettleFrames);
    AdaptAverageTime(nSettleFrames);
    m_fAverage = static_cast<float>(m_fAverage + ROUNDING);
    CalmLastCent();
    BuildReading();
    m_bHolding = m_bHoldNext;
    if (!m_bHolding) {
        m_lastReading = m_current;
    }
    return m_lastReading;
}

// Whether each of the frames before the newest lies near it. Frames before the tracker's first count as far
// away: no note lies near position 0. Once around the ring is all there is.
bool CNoteTracker::IsStable(float fPosition, int nStableFrames) const {
    int nEntry = m_nWrite;
    for (int i = 0; i < std::min(nStableFrames, RING - 1); ++i) {
        nEntry = Back(nEntry);
        const double dBefore = m_afPosition[static_cast<std::size_t>(nEntry)];
        if (std::abs(dBefore - fPosition) > STABLE_RANGE) {
            return false;
        }
    }
    return true;
}

void CNoteTracker::SwitchNote(bool bStable, float fStrength, int nSettleFrames, int nStableFrames) {
    if (m_bHolding && bStable && fStrength > ON_STRENGTH) {
        m_bHoldNext = false;
        m_nSettle = nSettleFrames;
        // The averages start afresh from the frames of this note, of which the newest is one.
        m_nFilled = std::clamp(nStableFrames, 1, RING);
    } else if (!m_bHolding && (!bStable || fStrength < OFF_STRENGTH)) {
        m_bHoldNext = true;
    }
}

// Means over the averaging time, from the newest entry back.
void CNoteTracker::Average(int nSampleRate) {
    const double dSamples = static_cast<double>(nSampleRate) * m_fAverageTime;
    float fSamples = 0.0F;
    float fPosition = 0.0F;
    float fStrength = 0.0F;
    float fFrequency = 0.0F;
    float fLevel = 0.0F;
    int nTaken = 0;
    for (int nEntry = m_nWrite; fSamples < dSamples && nTaken < m_nFilled; nEntry = Back(nEntry)) {
        const auto i = static_cast<std::size_t>(nEntry);
        fSamples += m_afHop[i];
        fPosition += m_afPosition[i];
        fStrength += m_afStrength[i];
        fFrequency += m_afFrequency[i];
        fLevel += m_afLevel[i];
        ++nTaken;
    }
    const auto fCount = static_cast<float>(nTaken);
    m_fAverage = fPosition / fCount;
    m_fAverageStrength = fStrength / fCount;
    m_fAverageFrequency = fFrequency / fCount;
    m_fAverageLevel = fLevel / fCount;
    m_afSmoothed[static_cast<std::size_t>(m_nWrite)] = m_fAverage;
}

// The back and forth of the averaged position: the way it went less the way it got on, so that a steady glide
// is calm.
void CNoteTracker::MeasureRoughness(int nSettleFrames) {
    const int nFrames = std::min(std::max(nSettleFrames, LEAST_ROUGHNESS_FRAMES), m_nFilled);
    float fWay = 0.0F;
    int nEntry = m_nWrite;
    for (int i = 1; i < nFrames; ++i) {
        const int nBefore = Back(nEntry);
        const double dHere = m_afSmoothed[static_cast<std::size_t>(nEntry)];
        fWay = static_cast<float>(fWay + std::abs(dHere - m_afSmoothed[static_cast<std::size_t>(nBefore)]));
        nEntry = nBefore;
    }
    const double dNewest = m_afSmoothed[static_cast<std::size_t>(m_nWrite)];
    const double dGotOn = std::abs(dNewest - m_afSmoothed[static_cast<std::size_t>(nEntry)]);
    m_fRoughness = static_cast<float>((fWay - dGotOn) / nFrames);
}

void CNoteTracker::AdaptAverageTime(int nSettleFrames) {
    if (m_bHolding || nSettleFrames >= m_nFilled) {
        return;
    }
    if (m_nSettle > 0) {
        --m_nSettle;
        return;
    }
    if (m_fRoughness < CALM_ROUGHNESS) {
        --m_nAverageStep;
    } else if (m_fRoughness > RESTLESS_ROUGHNESS) {
        ++m_nAverageStep;
    }
    m_nAverageStep = std::clamp(m_nAverageStep, 0, static_cast<int>(m_afAverageTimes.size()) - 1);
    m_fAverageTime = m_afAverageTimes[static_cast<std::size_t>(m_nAverageStep)];
    m_nSettle = 2 * nSettleFrames;
}

// When the position hops between two neighbouring whole cents, puts it on the one where it stood longer.
void CNoteTracker::CalmLastCent() {
    const int nCent = static_cast<int>(m_fAverage);
    if (nCent != m_nCentNow) {
        m_nRunPrev2 = m_nRunPrev;
        m_nRunPrev = m_nRun;
        m_nRun = 0;
        m_nCentPrev2 = m_nCentPrev;
        m_nCentPrev = m_nCentNow;
        m_nCentNow = nCent;
        if (m_nCentPrev2 == m_nCentNow) {
            m_nRun = m_nRunPrev2;
        }
    }
    ++m_nRun;
    if (m_nCentPrev2 == m_nCentNow && std::abs(m_nCentNow - m_nCentPrev) == 1) {
        m_fAverage = static_cast<float>(m_nRun > m_nRunPrev ? m_nCentNow : m_nCentPrev);
    } else {
        m_nRunPrev = 0;
        m_nRunPrev2 = 0;
    }
}

void CNoteTracker::BuildReading() {
    const int nOctave = static_cast<int>(m_fAverage) / CENTS_PER_OCTAVE;
    const double dInOctave = static_cast<double>(m_fAverage) - CENTS_PER_OCTAVE * nOctave;
    const int nSemitone = static_cast<int>(dInOctave) / CENTS_PER_SEMITONE;
    const double dCents = dInOctave - CENTS_PER_SEMITONE * nSemitone - HALF_SEMITONE;
    m_current.Set(nSemitone, nOctave, static_cast<float>(dCents), m_fAverageStrength, m_fAverageFrequency);
}
