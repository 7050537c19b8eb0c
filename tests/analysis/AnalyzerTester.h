#pragma once

#include "analysis/SpectrumAnalyzer.h"

#include <cstddef>
#include <vector>

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
