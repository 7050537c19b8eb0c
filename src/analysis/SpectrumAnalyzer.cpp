#include "analysis/SpectrumAnalyzer.h"

#include "platform/signal/RealFft.h"
#include "platform/signal/VectorOperations.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

namespace {

// The float nearest to 2 pi.
constexpr float TWO_PI = 6.2831855F;

// A probe is moved up by a prime when the harmonics that are multiples of the prime hold more than this share
// of its score. By rank of the prime: 2, 3, and all that follow.
constexpr std::array<float, 3> PRIME_SHARES = {0.83F, 0.6F, 0.75F};

constexpr double HIGHEST_SAMPLE = 32767.0;
constexpr double LOWEST_SAMPLE = 32768.0;
// The level meter's range, on the scale of 10 ln of the ratio to full scale.
constexpr double LEVEL_RANGE = 60.0;

// Harmonics whose divisors are kept in a table: those of 35 Hz up to 22 kHz.
constexpr int LISTED_HARMONICS = 640;

// Sizes beyond any use, whose tables' sizes are still far from what an int holds.
constexpr int LONGEST_BLOCK = 1 << 24;

constexpr float FIRST_REFERENCE = DEFAULT_A_FREQUENCY;

}  // namespace

bool CSpectrumAnalyzer::Setup(int nBlockSamples, int nSampleRate, int nMaxPeaks, int nPrimes, int nProbes,
                              float fLowestFrequency) {
    m_nSampleRate = nSampleRate;
    m_nBlockSamples = nBlockSamples;
    m_fHalfBin = static_cast<float>(nSampleRate / (2.0 * nBlockSamples));
    m_nHalfBlock = nBlockSamples / 2;
    m_fLowestFrequency = fLowestFrequency;

    CAlignedArray<float> temporary;
    if (nBlockSamples < 0 || nBlockSamples > LONGEST_BLOCK || nSampleRate <= 0 ||
        !(fLowestFrequency > 0.0F) || nPrimes > MAX_PRIMES || nProbes > MAX_PROBES ||
        !temporary.Allocate(nBlockSamples + 1)) {
        return false;
    }
    ReleaseTables();
    if (!AllocateTables(nMaxPeaks, nPrimes, nProbes) ||
        !std::has_single_bit(static_cast<unsigned>(nBlockSamples))) {
        return false;
    }
    m_nFftOrder = std::countr_zero(static_cast<unsigned>(nBlockSamples));
    if (!nspsPrepareRealFft(m_nFftOrder)) {
        return false;
    }
    m_fBandRatio = static_cast<float>(std::pow(2.0, -1.0 / nProbes));
    for (int t = 0; t < nProbes; ++t) {
        m_pfFirstProbe[t] =
            static_cast<float>(std::pow(2.0, static_cast<double>(t) / nProbes) * fLowestFrequency);
    }
    ResetProbes();
    FillPrimes();
    m_bank.Prepare(m_pnPrimes.All(), m_pfPrimeShare.All());
    m_firstBands = {};
    for (int t = 0; t < nProbes; ++t) {
        m_firstBands[static_cast<std::size_t>(t / CProbeBank::LANES)].Set(t % CProbeBank::LANES,
                                                                          m_pfFirstProbe[t], m_fBandRatio);
    }
    BuildWindows(temporary);
    ClearCandidates();
    // Limits that the first reference lies outside of leave the analyser without notes until another one
    // fits.
    if (!SetReference(FIRST_REFERENCE) &&
        CNoteGrid::CanHangOn(FIRST_REFERENCE, fLowestFrequency, nSampleRate)) {
        return false;
    }
    return m_claims.Init(SEMITONES, nMaxPeaks);
}

bool CSpectrumAnalyzer::AllocateTables(int nMaxPeaks, int nPrimes, int nProbes) {
    const int nBins = m_nBlockSamples + 2;
    const int nPlaces = m_nHalfBlock + 1;
    const int nSlots = nMaxPeaks * nProbes;
    m_nMaxPeaks = nMaxPeaks;
    m_nProbes = nProbes;
    m_nPrimes = nPrimes;
    return m_pfWindow.Allocate(m_nBlockSamples) && m_pfRampWindow.Allocate(m_nBlockSamples) &&
           m_pfSlopeWindow.Allocate(m_nBlockSamples) && m_pfSpectrum.Allocate(nBins) &&
           m_pfSlopeSpectrum.Allocate(nBins) && m_pfRampSpectrum.Allocate(nBins) &&
           m_pfPower.Allocate(nPlaces) && m_pnScannedBin.Allocate(nPlaces) &&
           m_pfScannedPower.Allocate(nPlaces) && m_pnStrongBin.Allocate(nPlaces) &&
           m_pfFoundFrequency.Allocate(nPlaces) && m_pfFoundPower.Allocate(nPlaces) &&
           m_pnPeakHarmonic.Allocate(nSlots) && m_pfFirstProbe.Allocate(nProbes) &&
           m_pfPeakFrequency.Allocate(nMaxPeaks) && m_pfPeakAmplitude.Allocate(nMaxPeaks) &&
           m_pnSlotCount.Allocate(nProbes) && m_pnSlotHarmonic.Allocate(nSlots + 1) &&
           m_pfSlotFrequency.Allocate(nSlots) && m_pfSlotAmplitude.Allocate(nSlots) &&
           m_pfProbeFrequency.Allocate(nProbes) && m_pfProbeScore.Allocate(nProbes) &&
           m_pnPrimes.Allocate(nPrimes) && m_pbSlotDivisors.Allocate(nMaxPeaks) &&
           m_pbDivisors.Allocate(LISTED_HARMONICS) && m_pfPrimeShare.Allocate(nPrimes) &&
           m_pCandidates.Allocate(SEMITONES);
}

void CSpectrumAnalyzer::ReleaseTables() {
    m_pfWindow.Free();
    m_pfRampWindow.Free();
    m_pfSlopeWindow.Free();
    m_pfSpectrum.Free();
    m_pfSlopeSpectrum.Free();
    m_pfRampSpectrum.Free();
    m_pfPower.Free();
    m_pnScannedBin.Free();
    m_pfScannedPower.Free();
    m_pnStrongBin.Free();
    m_pfFoundFrequency.Free();
    m_pfFoundPower.Free();
    m_pnPeakHarmonic.Free();
    m_pfFirstProbe.Free();
    m_pnSlotCount.Free();
    m_pnSlotHarmonic.Free();
    m_pfSlotFrequency.Free();
    m_pfSlotAmplitude.Free();
    m_pfPeakFrequency.Free();
    m_pfPeakAmplitude.Free();
    m_pfProbeFrequency.Free();
    m_pfProbeScore.Free();
    m_pnPrimes.Free();
    m_pbSlotDivisors.Free();
    m_pbDivisors.Free();
    m_pfPrimeShare.Free();
    m_pCandidates.Free();
    m_grid.Publish(nullptr);
}

void CSpectrumAnalyzer::Clear() {
    ReleaseTables();
    m_claims.Free();
    nspFreeBitRevTbls();
    nspcFreeTwdTbls();
}

void CSpectrumAnalyzer::FillPrimes() {
    int nFound = 0;
    for (int nNumber = 2; nFound < m_nPrimes; ++nNumber) {
        const auto found = m_pnPrimes.All().first(static_cast<std::size_t>(nFound));
        if (std::none_of(found.begin(), found.end(),
                         [nNumber](int nPrime) { return nNumber % nPrime == 0; })) {
            m_pfPrimeShare[nFound] =
                PRIME_SHARES[std::min<std::size_t>(found.size(), PRIME_SHARES.size() - 1)];
            m_pnPrimes[nFound] = nNumber;
            for (int h = nNumber; h < m_pbDivisors.Count(); h += nNumber) {
                m_pbDivisors[h] = static_cast<std::uint8_t>(m_pbDivisors[h] | 1U << nFound);
            }
            ++nFound;
        }
    }
}

// temporary has one entry more than a block.
void CSpectrumAnalyzer::BuildWindows(CAlignedArray<float>& temporary) {
    const int nCount = m_nBlockSamples;
    const auto fStep = static_cast<float>(2.0 / std::max(nCount - 1, 1));
    for (int i = 0; i < nCount; ++i) {
        m_pfWindow[i] = 1.0F;
        m_pfRampWindow[i] = static_cast<float>(i * static_cast<double>(fStep) - 1.0);
    }
    const auto temporarySpan = temporary.All();
    std::fill(temporarySpan.begin(), temporarySpan.end(),
              static_cast<float>(m_nSampleRate / static_cast<double>(TWO_PI)));
    nspsWinBlackmanStd(m_pfWindow.Data(), nCount);
    nspsWinBlackmanStd(m_pfRampWindow.Data(), nCount);
    nspsWinBlackmanStd(temporary.Data(), nCount + 1);
    for (int i = 0; i < nCount; ++i) {
        m_pfSlopeWindow[i] = temporary[i + 1] - temporary[i];
    }
}

bool CSpectrumAnalyzer::SetReference(float fA) {
    auto pGrid = CNoteGrid::Build(fA, m_fLowestFrequency, m_nSampleRate);
    if (!pGrid) {
        return false;
    }
    m_grid.Publish(std::move(pGrid));
    return true;
}

float CSpectrumAnalyzer::ComputeLevel() const {
    const double dHighest = nspsMax(m_pfSpectrum.Data(), m_nBlockSamples);
    const double dLowest = nspsMin(m_pfSpectrum.Data(), m_nBlockSamples);
    const double dRatio = -dLowest < dHighest ? dHighest / HIGHEST_SAMPLE : std::abs(dLowest) / LOWEST_SAMPLE;
    if (!(dRatio > 0.0)) {
        return 0.0F;
    }
    const double dLevel = std::clamp(10.0 * std::log(dRatio), -LEVEL_RANGE, 0.0);
    return static_cast<float>(1.0 + dLevel / LEVEL_RANGE);
}

void CSpectrumAnalyzer::TransformBlock(bool bTimeGate) {
    // The products need the raw samples, so that the plain spectrum comes last.
    if (bTimeGate) {
        nspsbMpy3(m_pfSpectrum.Data(), m_pfRampWindow.Data(), m_pfRampSpectrum.Data(), m_nBlockSamples);
    }
    nspsbMpy3(m_pfSpectrum.Data(), m_pfSlopeWindow.Data(), m_pfSlopeSpectrum.Data(), m_nBlockSamples);
    nspsbMpy2(m_pfWindow.Data(), m_pfSpectrum.Data(), m_nBlockSamples);
    nspsRealFft(m_pfSpectrum.Data(), m_nFftOrder, NSP_FORWARD);
    if (bTimeGate) {
        nspsRealFft(m_pfRampSpectrum.Data(), m_nFftOrder, NSP_FORWARD);
    }
    nspsRealFft(m_pfSlopeSpectrum.Data(), m_nFftOrder, NSP_FORWARD);
}

NoteReading CSpectrumAnalyzer::MakeReading(float fFrequency, float fRawStrength) {
    if (m_pBlockGrid != nullptr) {
        return m_pBlockGrid->MakeReading(fFrequency, fRawStrength);
    }
    const CPublishedGrid::CReader reader(m_grid);
    return reader.Get() != nullptr ? reader.Get()->MakeReading(fFrequency, fRawStrength)
                                   : NoteReading::Empty(0);
}

void CSpectrumAnalyzer::ClearCandidates() {
    for (int i = 0; i < SEMITONES; ++i) {
        m_pCandidates[i] = NoteReading::Empty(i);
    }
}

bool CSpectrumAnalyzer::Analyze(bool bTimeGate, int nHop) {
    // One grid for the whole block, so that a reading's slot and its semitone agree.
    const CPublishedGrid::CReader reader(m_grid);
    m_pBlockGrid = reader.Get();
    ClearCandidates();
    FindPeaks(bTimeGate, nHop);
    m_claims.Reset();
    m_claims.LoadPeaks(m_pfPeakFrequency.Data(), m_pfPeakAmplitude.Data(), m_nMaxPeaks);
    SearchProbes();
    m_claims.Rebuild();
    while (m_claims.DropWeakest()) {
    }
    m_claims.CopyOut(m_pCandidates.All());
    for (int i = 0; i < SEMITONES; ++i) {
        NoteReading& candidate = m_pCandidates[i];
        candidate = candidate.strength > 1.0F ? MakeReading(candidate.frequency, candidate.strength)
                                              : NoteReading::Empty(i);
    }
    m_pBlockGrid = nullptr;
    return true;
}
