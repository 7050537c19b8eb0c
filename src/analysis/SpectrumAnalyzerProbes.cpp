// The harmonic sieve: which fundamentals do the selected peaks agree on?

#include "analysis/SpectrumAnalyzer.h"
#include "platform/signal/VectorClones.h"
#include "platform/signal/VectorOperations.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numeric>
#include <utility>

namespace {

// Harmonics up to this one are the low ones.
constexpr int LAST_LOW_HARMONIC = 5;
// What the low harmonics of a fundamental must exceed, as a part of the score.
constexpr double LEAST_LOW_PART = 0.25;
// What the harmonics with a neighbour must reach. Exactly half suffices: two harmonics alone are a note.
constexpr double LEAST_ADJACENT_PART = 0.5;

// For each peak the harmonic whose band, from harmonic x dLow (outside) to harmonic x dHigh (inside), it lies
// in: the lowest one that reaches it; 0 for a peak between the bands.
FRETVANE_VECTOR_CLONES
void MatchHarmonics(const float* pfFrequency, int n, double dLow, double dHigh, int* pnHarmonic) {
    const double dReciprocal = 1.0 / dHigh;
    for (int i = 0; i < n; ++i) {
        const double dFrequency = pfFrequency[i];
        // Products of a harmonic and a float are exact in double precision, and so is each comparison. The
        // quotient errs by far less than the least distance that two floats' quotient can have from a whole
        // number.
        const int nBelow = static_cast<int>(dFrequency * dReciprocal);
        const int nHarmonic = nBelow + static_cast<int>(nBelow * dHigh < dFrequency);
        pnHarmonic[i] = nHarmonic * dLow < dFrequency ? nHarmonic : 0;
    }
}

using Floats [[gnu::vector_size(CSpectrumAnalyzer::MAX_PRIMES * sizeof(float))]] = float;
using Bits [[gnu::vector_size(CSpectrumAnalyzer::MAX_PRIMES * sizeof(std::uint32_t))]] = std::uint32_t;

// Adds each slot's amplitude to the sums of the primes that divide its harmonic, all primes side by side.
FRETVANE_VECTOR_CLONES
void SumByPrimes(const std::uint8_t* pbDivisors, const float* pfAmplitude, int n,
                 CSpectrumAnalyzer::PrimeSums& sums) {
    constexpr Bits BITS = {1, 2, 4, 8, 16, 32, 64, 128};
    constexpr Floats NONE = {};
    Floats local = {};
    for (int i = 0; i < n; ++i) {
        const Bits divisors = BITS & pbDivisors[i];
        local += divisors != 0 ? pfAmplitude[i] + NONE : NONE;
    }
    std::memcpy(sums.data(), &local, sizeof local);
}

// The prime that lifts, or 0.
int GetDivisor(std::int32_t nVerdict) {
    if ((nVerdict & CProbeBank::LIFTED_BY_TWO) != 0) {
        return 2;
    }
    if ((nVerdict & CProbeBank::LIFTED_BY_THREE) != 0) {
        return 3;
    }
    return (nVerdict & CProbeBank::LIFTED_BY_FIVE) != 0 ? 5 : 0;
}

}  // namespace

void CSpectrumAnalyzer::ResetProbes() {
    nspsbCopy(m_pfFirstProbe.Data(), m_pfProbeFrequency.Data(), m_nProbes);
    m_pfProbeScore.FillZero();
}

// Each probe goes its way on its own: as long as a prime lifts it, it moves up, and what it is at the end
// decides. The fundamentals are accepted in the order in which they would come out if the strongest probe,
// and among equals the first, always took the next step.
void CSpectrumAnalyzer::SearchProbes() {
    ResetProbes();
    m_fundamentals.nCount = 0;
    m_waiting.nCount = m_nProbes;
    std::iota(m_waiting.anProbe.begin(), m_waiting.anProbe.end(), 0);
    m_afLeastScore.fill(std::numeric_limits<float>::max());
    for (bool bFirstRound = true; m_waiting.nCount > 0; bFirstRound = false) {
        const CProbeList probes = std::exchange(m_waiting, {});
        const auto all = std::span(probes.anProbe).first(static_cast<std::size_t>(probes.nCount));
        for (std::size_t nFirst = 0; nFirst < all.size(); nFirst += CProbeBank::LANES) {
            const auto group =
                all.subspan(nFirst, std::min<std::size_t>(CProbeBank::LANES, all.size() - nFirst));
            if (bFirstRound) {
                JudgeProbes(group, m_firstBands[nFirst / CProbeBank::LANES]);
                continue;
            }
            CProbeBank::CBands bands;
            for (int nLane = 0; const int t : group) {
                bands.Set(nLane++, m_pfProbeFrequency[t], m_fBandRatio);
            }
            JudgeProbes(group, bands);
        }
    }
    AcceptProbes();
}

// probes: at most a group. bands: those of the probes at their present frequencies.
void CSpectrumAnalyzer::JudgeProbes(std::span<const int> probes, const CProbeBank::CBands& bands) {
    const CProbeBank::Verdicts verdicts =
        m_bank.Judge(bands, m_pfPeakFrequency.Data(), m_pfPeakAmplitude.Data(), m_nSelected);
    for (std::size_t nLane = 0; nLane < probes.size(); ++nLane) {
        if (verdicts.anVerdict[nLane] != 0) {
            JudgeProbe(probes[nLane], verdicts.afScore[nLane], verdicts.anVerdict[nLane]);
        }
    }
}

void CSpectrumAnalyzer::JudgeProbe(int nProbe, float fScore, std::int32_t nVerdict) {
    m_pfProbeScore[nProbe] = fScore;
    int nDivisor = GetDivisor(nVerdict);
    bool bLifted = nDivisor != 0;
    const bool bUnsure = (nVerdict & CProbeBank::UNSURE) != 0;
    if (bUnsure) {
        m_pfProbeScore[nProbe] = ScoreProbe(m_pfProbeFrequency[nProbe], nProbe);
        bLifted = FindDivisor(nProbe, &nDivisor);
    }
    float& fLeast = m_afLeastScore[static_cast<std::size_t>(nProbe)];
    fLeast = std::min(fLeast, m_pfProbeScore[nProbe]);
    const int nHighest = m_nSampleRate / 2;
    const double dLifted = nDivisor * static_cast<double>(m_pfProbeFrequency[nProbe]);
    if (bLifted && dLifted < nHighest) {
        m_pfProbeFrequency[nProbe] = static_cast<float>(dLifted);
        m_waiting.Add(nProbe);
    } else if (bUnsure ? IsFundamental(nProbe) : (nVerdict & CProbeBank::FUNDAMENTAL) != 0) {
        m_fundamentals.Add(nProbe);
    }
}

// A probe waits for its last step until nobody is stronger than it was at its weakest, which gives the order.
// Where a probe holds the same peaks on the same harmonics as one before it, it changes nothing.
void CSpectrumAnalyzer::AcceptProbes() {
    const auto fundamentals = m_fundamentals.All();
    std::sort(fundamentals.begin(), fundamentals.end(), [this](int a, int b) {
        const float fA = m_afLeastScore[static_cast<std::size_t>(a)];
        const float fB = m_afLeastScore[static_cast<std::size_t>(b)];
        return fA > fB || (fA == fB && a < b);
    });
    std::size_t nBefore = 0;
    for (const int t : fundamentals) {
        MatchProbe(m_pfProbeFrequency[t], t);
        if (!IsMatchedLikeBefore(t, fundamentals.first(nBefore))) {
            FillSlots(t);
            AcceptProbe(t);
        }
        ++nBefore;
    }
    m_pfProbeScore.FillZero();
    m_pfProbeFrequency.FillZero();
}

bool CSpectrumAnalyzer::IsMatchedLikeBefore(int nProbe, std::span<const int> before) {
    const auto matches = MatchesOf(nProbe);
    return std::any_of(before.begin(), before.end(), [this, nProbe, matches](int nBefore) {
        return m_pfProbeScore[nBefore] == m_pfProbeScore[nProbe] &&
               std::equal(matches.begin(), matches.end(), MatchesOf(nBefore).begin());
    });
}

// The harmonics that the probe gives the peaks.
std::span<int> CSpectrumAnalyzer::MatchesOf(int nProbe) {
    const auto nPeaks = static_cast<std::size_t>(m_nMaxPeaks);
    return m_pnPeakHarmonic.All().subspan(static_cast<std::size_t>(nProbe) * nPeaks, nPeaks);
}

void CSpectrumAnalyzer::MatchProbe(float fFrequency, int nProbe) {
    const auto fLow = static_cast<float>(static_cast<double>(fFrequency) * m_fBandRatio);
    const auto fHigh = static_cast<float>(static_cast<double>(fFrequency) / m_fBandRatio);
    MatchHarmonics(m_pfPeakFrequency.Data(), m_nMaxPeaks, fLow, fHigh, MatchesOf(nProbe).data());
}

float CSpectrumAnalyzer::ScoreProbe(float fFrequency, int nProbe) {
    MatchProbe(fFrequency, nProbe);
    return FillSlots(nProbe);
}

// Fills the probe's slots with the peaks that it matched, of several in one band the strongest. The score is
// the sum of their amplitudes.
float CSpectrumAnalyzer::FillSlots(int nProbe) {
    const int nBase = nProbe * m_nMaxPeaks;
    int* pnHarmonic = m_pnSlotHarmonic.Data() + nBase;
    float* pfFrequency = m_pfSlotFrequency.Data() + nBase;
    float* pfAmplitude = m_pfSlotAmplitude.Data() + nBase;
    // Which peaks match cannot be foreseen, so that there is no branch on it: the slot being filled is
    // written at every peak, and a peak that does not match changes nothing. Before the first match slot 0
    // takes what is written.
    int nSlot = -1;
    int nHere = 0;
    float fStrongest = 0.0F;
    float fBest = 0.0F;
    float fScore = 0.0F;
    for (int i = 0; i < m_nMaxPeaks; ++i) {
        const int h = m_pnPeakHarmonic[nBase + i];
        const float a = m_pfPeakAmplitude[i];
        const bool bMatch = (h != 0) & (a > 0.0F);
        const bool bNew = bMatch & (h != nHere);
        nSlot += static_cast<int>(bNew);
        fScore += bNew ? fStrongest : 0.0F;
        fStrongest = bNew ? 0.0F : fStrongest;
        const bool bStronger = bMatch & (fStrongest < a);
        fStrongest = bStronger ? a : fStrongest;
        fBest = bStronger ? m_pfPeakFrequency[i] : fBest;
        nHere = bNew ? h : nHere;
        const int nWrite = std::max(nSlot, 0);
        pnHarmonic[nWrite] = nHere;
        pfFrequency[nWrite] = fBest;
        pfAmplitude[nWrite] = fStrongest;
    }
    m_pnSlotCount[nProbe] = nSlot + 1;
    return fScore + fStrongest;
}

// Whether the probe's energy sits on the multiples of a prime: the first one, in the order of the harmonics,
// whose multiples hold more than its share of the score.
bool CSpectrumAnalyzer::FindDivisor(int nProbe, int* pnDivisor) {
    const int nBase = nProbe * m_nMaxPeaks;
    const int* pnHarmonic = m_pnSlotHarmonic.Data() + nBase;
    const float* pfAmplitude = m_pfSlotAmplitude.Data() + nBase;
    const int nSlots = m_pnSlotCount[nProbe];
    for (int i = 0; i < nSlots; ++i) {
        m_pbSlotDivisors[i] = DivisorsOf(pnHarmonic[i]);
    }
    // Sums only grow, so that a prime wins at some slot exactly if it wins with all of them. Most often none
    // does.
    SumByPrimes(m_pbSlotDivisors.Data(), pfAmplitude, nSlots, m_afPrimeEnergy);
    const double dScore = m_pfProbeScore[nProbe];
    std::uint32_t nWinners = 0;
    for (int q = 0; q < m_nPrimes; ++q) {
        const bool bWins = dScore * m_pfPrimeShare[q] < m_afPrimeEnergy[static_cast<std::size_t>(q)];
        nWinners |= static_cast<std::uint32_t>(bWins) << q;
    }
    if (nWinners == 0) {
        return false;
    }
    // Among several winners the first to win.
    m_afPrimeEnergy.fill(0.0F);
    for (int i = 0; i < nSlots; ++i) {
        for (std::uint32_t nLeft = m_pbSlotDivisors[i] & nWinners; nLeft != 0; nLeft &= nLeft - 1) {
            const int q = std::countr_zero(nLeft);
            float& fEnergy = m_afPrimeEnergy[static_cast<std::size_t>(q)];
            fEnergy += pfAmplitude[i];
            if (dScore * m_pfPrimeShare[q] < fEnergy) {
                *pnDivisor = m_pnPrimes[q];
                return true;
            }
        }
    }
    return false;
}

// The primes that divide harmonic h, as bits: none for 0, an empty slot.
std::uint8_t CSpectrumAnalyzer::DivisorsOf(int h) const {
    if (h < m_pbDivisors.Count()) {
        return m_pbDivisors[h];
    }
    std::uint32_t nDivisors = 0;
    for (int q = 0; q < m_nPrimes; ++q) {
        nDivisors |= static_cast<std::uint32_t>(h % m_pnPrimes[q] == 0) << q;
    }
    return static_cast<std::uint8_t>(nDivisors);
}

// Whether half of the score stands on neighbouring harmonics, and more than a quarter on the low ones.
bool CSpectrumAnalyzer::IsFundamental(int nProbe) const {
    const int nBase = nProbe * m_nMaxPeaks;
    const int* pnHarmonic = m_pnSlotHarmonic.Data() + nBase;
    const float* pfAmplitude = m_pfSlotAmplitude.Data() + nBase;
    const int nSlots = m_pnSlotCount[nProbe];
    float fAdjacent = 0.0F;
    float fLow = 0.0F;
    bool bBefore = false;
    for (int i = 0; i < nSlots; ++i) {
        const float a = pfAmplitude[i];
        // There is a slot past the last, with whatever is left in it.
        const bool bAfter = (i + 1 < nSlots) & (pnHarmonic[i + 1] == pnHarmonic[i] + 1);
        fAdjacent += bBefore ? a : 0.0F;
        fAdjacent += bAfter ? a : 0.0F;
        fLow += pnHarmonic[i] <= LAST_LOW_HARMONIC ? a : 0.0F;
        bBefore = bAfter;
    }
    fAdjacent *= 0.5F;
    const double dScore = m_pfProbeScore[nProbe];
    return !(LEAST_ADJACENT_PART * dScore > fAdjacent) && fLow > LEAST_LOW_PART * dScore;
}

// A fundamental that is stronger than what its semitone holds takes that place and claims its peaks.
void CSpectrumAnalyzer::AcceptProbe(int nProbe) {
    const NoteReading note = EstimateFundamental(nProbe);
    NoteReading& candidate = m_pCandidates[note.semitone];
    if (note.strength > candidate.strength) {
        candidate = note;
        m_claims.ClearNote(note.semitone);
        m_claims.SetOctave(note.semitone, note.octave);
        m_claims.SetFrequency(note.semitone, note.frequency);
        for (int i = 0; i < m_pnSlotCount[nProbe]; ++i) {
            m_claims.ClaimPeak(note.semitone, m_pfSlotFrequency[nProbe * m_nMaxPeaks + i]);
        }
    }
}

// The fundamental that the probe's peaks agree on: the mean of frequency / harmonic, weighted by amplitude.
NoteReading CSpectrumAnalyzer::EstimateFundamental(int nProbe) {
    float fWeighted = 0.0F;
    float fAmplitude = 0.0F;
    const int nBase = nProbe * m_nMaxPeaks;
    for (int i = nBase; i < nBase + m_pnSlotCount[nProbe]; ++i) {
        const double dFundamental = static_cast<double>(m_pfSlotFrequency[i]) / m_pnSlotHarmonic[i];
        fWeighted = static_cast<float>(fWeighted + dFundamental * m_pfSlotAmplitude[i]);
        fAmplitude += m_pfSlotAmplitude[i];
    }
    return MakeReading(static_cast<float>(static_cast<double>(fWeighted) / fAmplitude), fAmplitude);
}
