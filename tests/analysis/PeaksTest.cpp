#include "analysis/AnalyzerTester.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr double AMPLITUDE = 10000.0;

class Peaks : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(SetUpFor(m_analyzer, m_set)); }
    void FindPeaksOfSine(double dFrequency, bool bTimeGate = false, int nHop = 128) {
        FillPartials(m_analyzer, m_set, {{dFrequency, AMPLITUDE}});
        m_analyzer.FindPeaks(bTimeGate, nHop);
    }
    bool HasPeakNear(double dFrequency) const {
        const auto frequencies = m_analyzer.GetPeakFrequencies();
        return std::any_of(frequencies.begin(), frequencies.end(),
                           [dFrequency](float f) { return std::abs(f - dFrequency) < 1.0; });
    }

    CaptureSet m_set = CAPTURE_SETS[0];
    CSpectrumAnalyzer m_analyzer;
};

// A sine anywhere between two bins is found where it is, far within the distance of the bins.
TEST_F(Peaks, ReassignmentFindsASineBetweenTheBins) {
    for (const CaptureSet& set : CAPTURE_SETS) {
        m_set = set;
        SetUp();
        const double dBin = static_cast<double>(set.nSampleRate) / set.nBlockSamples;
        for (int nStep = 0; nStep < 64; ++nStep) {
            const double dBins = 20.0 + nStep / 16.0;
            FindPeaksOfSine(dBins * dBin);
            const auto amplitudes = m_analyzer.GetPeakAmplitudes();
            const auto itStrongest = std::max_element(amplitudes.begin(), amplitudes.end());
            const auto nStrongest = static_cast<std::size_t>(itStrongest - amplitudes.begin());
            EXPECT_NEAR(m_analyzer.GetPeakFrequencies()[nStrongest], dBins * dBin, 0.002 * dBin) << dBins;
            if (nStep % 16 == 0) {
                EXPECT_NEAR(*itStrongest, AMPLITUDE * 0.42 * (set.nBlockSamples - 1) / 2,
                            2.1 * set.nBlockSamples);
            }
        }
    }
}

// 50 Hz lies in bin 4 (43.07 Hz), where the scan begins. Bin 5 (53.83 Hz) needs to beat only its upper
// neighbour; what lies up to 6 Hz below it is accepted, the correction being cut to whole Hz first.
TEST_F(Peaks, TheLowestBinsFollowTheirOwnRule) {
    FindPeaksOfSine(48.1);
    EXPECT_TRUE(HasPeakNear(48.1));
    FindPeaksOfSine(46.5);
    EXPECT_FALSE(HasPeakNear(46.5));
}

TEST_F(Peaks, TheTimeGateComparesWithHalfTheHop) {
    FindPeaksOfSine(440.0, true, 2);
    EXPECT_TRUE(HasPeakNear(440.0)) << "the centre of a steady sound lies in the middle: below 1";
    for (const int nHop : {0, 1}) {
        FindPeaksOfSine(440.0, true, nHop);
        EXPECT_EQ(m_analyzer.GetPeakAmplitudes()[0], 0.0F) << "nothing is less than half of " << nHop;
        FindPeaksOfSine(440.0, false, nHop);
        EXPECT_TRUE(HasPeakNear(440.0));
    }
}

}  // namespace
