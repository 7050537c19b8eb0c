#pragma once

#include "analysis/SpectrumAnalyzer.h"
#include "support/CaptureSets.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>
#include <vector>

// The set-up that a capture makes.
inline bool SetUpFor(CSpectrumAnalyzer& analyzer, const CaptureSet& set) {
    return analyzer.Setup(set.nBlockSamples, set.nSampleRate, 20, 7, 24, set.fLowestFrequency);
}

// Puts a steady sound into the analyser's block: partials by frequency and amplitude.
inline void FillPartials(CSpectrumAnalyzer& analyzer, const CaptureSet& set,
                         const std::vector<std::pair<double, double>>& partials) {
    for (int i = 0; i < set.nBlockSamples; ++i) {
        double dSum = 0.0;
        for (const auto& [dFrequency, dAmplitude] : partials) {
            const double dTurns = dFrequency * i / set.nSampleRate;
            dSum += dAmplitude * std::sin(2.0 * std::numbers::pi * dTurns + dFrequency);
        }
        analyzer.GetInputBuffer()[i] = static_cast<float>(dSum);
    }
}

// Of equal ones the first.
inline NoteReading StrongestCandidate(const CSpectrumAnalyzer& analyzer) {
    const auto candidates = analyzer.GetCandidates();
    return *std::max_element(candidates.begin(), candidates.end(),
                             [](const auto& a, const auto& b) { return a.strength < b.strength; });
}

// Peaks in the order of rising frequency.
struct TestPeak {
    float fFrequency;
    float fAmplitude;
};

// Lets peaks that a test chose go through the sieve in place of those of a block.
class CSpectrumAnalyzerTester {
public:
    explicit CSpectrumAnalyzerTester(CSpectrumAnalyzer& analyzer) : m_analyzer(analyzer) {}

    // The candidates that the sieve accepts for these peaks, before the claims are weighed.
    std::vector<NoteReading> Sieve(const std::vector<TestPeak>& peaks) {
        m_analyzer.m_pfPeakFrequency.FillZero();
        m_analyzer.m_pfPeakAmplitude.FillZero();
        for (std::size_t i = 0; i < peaks.size(); ++i) {
            m_analyzer.m_pfPeakFrequency[static_cast<int>(i)] = peaks[i].fFrequency;
            m_analyzer.m_pfPeakAmplitude[static_cast<int>(i)] = peaks[i].fAmplitude;
        }
        m_analyzer.m_nSelected = static_cast<int>(peaks.size());
        m_analyzer.ClearCandidates();
        m_analyzer.m_claims.Reset();
        m_analyzer.SearchProbes();
        const auto candidates = m_analyzer.GetCandidates();
        return {candidates.begin(), candidates.end()};
    }

private:
    CSpectrumAnalyzer& m_analyzer;
};
