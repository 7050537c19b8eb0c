#include "analysis/NoteTracker.h"

#include "platform/signal/VectorClones.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

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

// Of some values the way from each to the next, and the least.
struct CWay {
    float fLength = 0.0F;
    float fLeast = std::numeric_limits<float>::max();
};

// In whatever order it suits the vector unit.
FRETVANE_VECTOR_CLONES
void AddWay(const float* pfValue, int n, CWay& way) {
    constexpr int LANES = VECTOR_LANES;
    FloatLanes lengths = {};
    FloatLanes leasts = lengths + way.fLeast;
    int i = 0;
    for (; i + LANES < n; i += LANES) {
        FloatLanes here;
        FloatLanes next;
        std::memcpy(&here, pfValue + i, sizeof here);
        std::memcpy(&next, pfValue + i + 1, sizeof next);
        lengths += next > here ? next - here : here - next;
        leasts = here < leasts ? here : leasts;
    }
    for (; i < n; ++i) {
        way.fLength += i + 1 < n ? std::abs(pfValue[i + 1] - pfValue[i]) : 0.0F;
        way.fLeast = std::min(way.fLeast, pfValue[i]);
    }
    for (std::size_t j = 0; j < VECTOR_LANES; ++j) {
        way.fLength += lengths[j];
        way.fLeast = std::min(way.fLeast, leasts[j]);
    }
}

FRETVANE_VECTOR_CLONES
bool IsAnyFar(const float* pfPosition, std::size_t n, double dFrom) {
    int nFar = 0;
    for (std::size_t i = 0; i < n; ++i) {
        nFar += static_cast<int>(std::abs(pfPosition[i] - dFrom) > STABLE_RANGE);
    }
    return nFar > 0;
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
    const CStretch before = StretchTo(m_afPosition, Back(m_nWrite), std::min(nStableFrames, RING - 1));
    return !IsAnyFar(before.newer.data(), before.newer.size(), fPosition) &&
           !IsAnyFar(before.older.data(), before.older.size(), fPosition);
}

// The nCount entries up to nNewest.
CNoteTracker::CStretch CNoteTracker::StretchTo(const Ring& ring, int nNewest, int nCount) {
    const auto nEnd = static_cast<std::size_t>(nNewest) + 1;
    const auto nAll = static_cast<std::size_t>(nCount);
    const std::size_t nNewer = std::min(nAll, nEnd);
    return {std::span(ring).last(nAll - nNewer), std::span(ring).subspan(nEnd - nNewer, nNewer)};
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
    const int nOldest = (m_nWrite + RING + 1 - nFrames) % RING;
    const double dNewest = m_afSmoothed[static_cast<std::size_t>(m_nWrite)];
    const double dGotOn = std::abs(dNewest - m_afSmoothed[static_cast<std::size_t>(nOldest)]);
    m_fRoughness = static_cast<float>((MeasureWay(nFrames) - dGotOn) / nFrames);
}

// The sum of the steps between the newest nFrames averages, rounded at each step from the newest back.
float CNoteTracker::MeasureWay(int nFrames) const {
    const CStretch averages = StretchTo(m_afSmoothed, m_nWrite, nFrames);
    CWay way;
    AddWay(averages.newer.data(), static_cast<int>(averages.newer.size()), way);
    if (!averages.older.empty()) {
        AddWay(averages.older.data(), static_cast<int>(averages.older.size()), way);
        way.fLength += std::abs(averages.newer.front() - averages.older.back());
    }
    // All positions are multiples of what a float resolves at the least of them. A way shorter than that one
    // is so few of these multiples that nothing was rounded: the order did not matter.
    if (way.fLength < way.fLeast) {
        return way.fLength;
    }
    float fWay = 0.0F;
    int nEntry = m_nWrite;
    for (int i = 1; i < nFrames; ++i) {
        const int nBefore = Back(nEntry);
        const double dHere = m_afSmoothed[static_cast<std::size_t>(nEntry)];
        fWay = static_cast<float>(fWay + std::abs(dHere - m_afSmoothed[static_cast<std::size_t>(nBefore)]));
        nEntry = nBefore;
    }
    return fWay;
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
