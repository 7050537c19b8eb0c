#pragma once

#include "analysis/NoteClaims.h"
#include "analysis/NoteGrid.h"
#include "analysis/ProbeBank.h"
#include "analysis/PublishedGrid.h"
#include "platform/signal/AlignedArray.h"
#include "tuning/NoteReading.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

// Turns one block of samples into note candidates, one for each semitone.
//
// The spectrum's precision beyond the bins of the Fourier transform comes from reassignment: a second
// spectrum through the time derivative of the window tells how far a partial lies from its bin's centre.
// (Auger and Flandrin, Improving the readability of time-frequency and time-scale representations by the
// reassignment method, IEEE Trans. Signal Processing 43(5), 1995.) The strongest peaks are then treated like
// a sieve: probe frequencies a quarter tone apart over one octave each collect the peaks on their harmonics,
// and are moved up by a prime factor as long as their energy sits on multiples of that prime, which is how
// the octave is chosen. (In the manner of harmonic sieves: Duifhuis, Willems and Sluyter, Measurement of
// pitch in speech, J. Acoust. Soc. Am. 71(6), 1982.)
//
// One thread analyses. Setup and Clear run while nothing is analysed. SetReference may run on another thread,
// one at a time, while blocks are analysed. After Setup nothing allocates or locks but SetReference.
class CSpectrumAnalyzer {
public:
    static constexpr int MAX_PRIMES = 8;
    // One for each prime.
    using PrimeSums = std::array<float, MAX_PRIMES>;

    CSpectrumAnalyzer() = default;
    ~CSpectrumAnalyzer() { Clear(); }
    CSpectrumAnalyzer(const CSpectrumAnalyzer&) = delete;
    CSpectrumAnalyzer& operator=(const CSpectrumAnalyzer&) = delete;

    // Makes the analyser ready for blocks of nBlockSamples, a power of two, at nSampleRate Hz, with the notes
    // of A = 440 Hz. nMaxPeaks: peaks kept of a block; nPrimes, at most MAX_PRIMES: primes that the octave is
    // looked for with; nProbes, at most 32: probe frequencies in the octave above fLowestFrequency (Hz).
    // False when one of these is out of range or memory cannot be had; only another Setup makes it usable
    // then.
    bool Setup(int nBlockSamples, int nSampleRate, int nMaxPeaks, int nPrimes, int nProbes,
               float fLowestFrequency);
    // Releases all that Setup took. Safe on a cleared analyser.
    void Clear();

    // Where the caller puts a block: nBlockSamples floats in order of time, raw values of signed 16-bit
    // samples. The analysis changes them. Valid until the next Setup or Clear.
    float* GetInputBuffer() { return m_pfSpectrum.Data(); }

    // Hangs the notes on another A frequency (Hz). False, and the old notes stay, when it is below the lowest
    // frequency or above the sample rate.
    bool SetReference(float fA);

    // The block's peak level from 0.0 (60 on the scale of 10 ln below full scale, or less) to 1.0. Before
    // Analyze.
    float ComputeLevel() const;

    // The whole analysis of the block in the input buffer, always true. bTimeGate: a peak must also have the
    // centre of its energy near the middle of the block. nHop: samples from the block before to this one.
    bool Analyze(bool bTimeGate, int nHop);
    // What Analyze found: slot i holds the note of semitone i or is empty. At most four are filled.
    std::span<const NoteReading> GetCandidates() const { return m_pCandidates.All(); }

    // The steps of Analyze, open for a look at what each gives.
    void TransformBlock(bool bTimeGate);
    void FindPeaks(bool bTimeGate, int nHop);
    // Complex bins as re, im pairs of the block through the window, and through the window's slope: scaled so
    // that the imaginary part of their ratio is a peak's distance from its bin in Hz. Through the ramp only
    // with the time gate.
    std::span<const float> GetSpectrum() const { return m_pfSpectrum.All(); }
    std::span<const float> GetSlopeSpectrum() const { return m_pfSlopeSpectrum.All(); }
    std::span<const float> GetRampSpectrum() const { return m_pfRampSpectrum.All(); }
    // The strongest peaks in order of rising frequency: Hz, and magnitudes of the unscaled transform; 0 past
    // the last.
    std::span<const float> GetPeakFrequencies() const { return m_pfPeakFrequency.All(); }
    std::span<const float> GetPeakAmplitudes() const { return m_pfPeakAmplitude.All(); }

    // The nearest note to fFrequency (Hz) and the cents from it. Only on the thread that analyses.
    NoteReading MakeReading(float fFrequency, float fRawStrength);

private:
    friend class CSpectrumAnalyzerTester;

    static constexpr int MAX_PROBES = 32;
    static constexpr int PROBE_GROUPS = MAX_PROBES / CProbeBank::LANES;

    // Some of the probes.
    struct CProbeList {
        std::array<int, MAX_PROBES> anProbe;
        int nCount = 0;

        void Add(int nProbe) { anProbe[static_cast<std::size_t>(nCount++)] = nProbe; }
        std::span<int> All() { return std::span(anProbe).first(static_cast<std::size_t>(nCount)); }
    };

    bool AllocateTables(int nMaxPeaks, int nPrimes, int nProbes);
    void ReleaseTables();
    void FillPrimes();
    void BuildWindows(CAlignedArray<float>& temporary);

    void ScanPeaks();
    int CorrectPeaks(int nStrongest, bool bTimeGate);
    void SelectPeaks(int nFound);

    void ResetProbes();
    void SearchProbes();
    void JudgeProbes(std::span<const int> probes, const CProbeBank::CBands& bands);
    void JudgeProbe(int nProbe, float fScore, std::int32_t nVerdict);
    void AcceptProbes();
    bool IsMatchedLikeBefore(int nProbe, std::span<const int> before);
    std::span<int> MatchesOf(int nProbe);
    void MatchProbe(float fFrequency, int nProbe);
    float FillSlots(int nProbe);
    float ScoreProbe(float fFrequency, int nProbe);
    bool FindDivisor(int nProbe, int* pnDivisor);
    std::uint8_t DivisorsOf(int h) const;
    void AcceptProbe(int nProbe);
    bool IsFundamental(int nProbe) const;
    NoteReading EstimateFundamental(int nProbe);
    void ClearCandidates();

    CAlignedArray<float> m_pfWindow;
    CAlignedArray<float> m_pfRampWindow;
    CAlignedArray<float> m_pfSlopeWindow;
    CAlignedArray<float> m_pfSpectrum;
    CAlignedArray<float> m_pfSlopeSpectrum;
    CAlignedArray<float> m_pfRampSpectrum;
    int m_nBlockSamples = 0;
    int m_nFftOrder = 0;
    int m_nHalfHop = 0;
    int m_nSampleRate = 0;
    float m_fLowestFrequency = 0.0F;
    float m_fHalfBin = 0.0F;
    int m_nHalfBlock = 0;
    // For each probe its slots, in order of their harmonics: how many are filled, and the peaks in them.
    CAlignedArray<int> m_pnSlotCount;
    CAlignedArray<int> m_pnSlotHarmonic;
    CAlignedArray<float> m_pfSlotFrequency;
    CAlignedArray<float> m_pfSlotAmplitude;
    CAlignedArray<float> m_pfPeakFrequency;
    CAlignedArray<float> m_pfPeakAmplitude;
    int m_nMaxPeaks = 0;
    CAlignedArray<float> m_pfProbeFrequency;
    CAlignedArray<float> m_pfProbeScore;
    int m_nProbes = 0;
    float m_fBandRatio = 0.0F;
    CNoteClaims m_claims;
    // Scratch of the peak search: the power of all bins; the bins above both neighbours and their powers; the
    // strongest of these; the frequencies and powers that they have once corrected; the harmonics that each
    // probe gives the selected peaks.
    CAlignedArray<float> m_pfPower;
    CAlignedArray<int> m_pnScannedBin;
    CAlignedArray<float> m_pfScannedPower;
    int m_nScanned = 0;
    CAlignedArray<int> m_pnStrongBin;
    CAlignedArray<float> m_pfFoundFrequency;
    CAlignedArray<float> m_pfFoundPower;
    int m_nSelected = 0;
    CAlignedArray<int> m_pnPeakHarmonic;
    CAlignedArray<std::uint8_t> m_pbSlotDivisors;
    CAlignedArray<std::uint8_t> m_pbDivisors;  // of the first harmonics
    CProbeBank m_bank;
    CAlignedArray<float> m_pfFirstProbe;  // where the probes of each block begin
    std::array<CProbeBank::CBands, PROBE_GROUPS> m_firstBands;
    // The probes that are to be judged next, and those found to be fundamentals; the least score that each
    // had on its way.
    CProbeList m_waiting;
    CProbeList m_fundamentals;
    std::array<float, MAX_PROBES> m_afLeastScore{};
    CAlignedArray<int> m_pnPrimes;
    PrimeSums m_afPrimeEnergy{};
    CAlignedArray<float> m_pfPrimeShare;
    int m_nPrimes = 0;
    CPublishedGrid m_grid;
    const CNoteGrid* m_pBlockGrid = nullptr;  // the grid that the block under analysis is named by
    CAlignedArray<NoteReading> m_pCandidates;
};
