#include "analysis/SpectrumAnalyzer.h"
#include "stage/SyntheticString.h"
#include "support/CaptureSets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numbers>
#include <vector>

namespace {

void MakeReady(CSpectrumAnalyzer& analyzer, const CaptureSet& set) {
    ASSERT_TRUE(analyzer.Setup(set.nBlockSamples, set.nSampleRate, 20, 7, 24, set.fLowestFrequency));
}

void FillSine(CSpectrumAnalyzer& analyzer, const CaptureSet& set, double dFrequency, double dPhase = 0.3) {
    for (int i = 0; i < set.nBlockSamples; ++i) {
        const double dTurns = dFrequency * i / set.nSampleRate;
        analyzer.GetInputBuffer()[i] =
            static_cast<float>(10000.0 * std::sin(2.0 * std::numbers::pi * dTurns + dPhase));
    }
}

std::size_t Strongest(const CSpectrumAnalyzer& analyzer) {
    const auto amplitudes = analyzer.GetPeakAmplitudes();
    return static_cast<std::size_t>(std::max_element(amplitudes.begin(), amplitudes.end()) -
                                    amplitudes.begin());
}

bool HasPeakNear(const CSpectrumAnalyzer& analyzer, double dFrequency) {
    const auto frequencies = analyzer.GetPeakFrequencies();
    return std::any_of(frequencies.begin(), frequencies.end(),
                       [dFrequency](float f) { return std::abs(f - dFrequency) < 1.0; });
}

// A sine anywhere between two bins is found where it is, far within the distance of the bins.
TEST(Peaks, ReassignmentFindsASineBetweenTheBins) {
    for (const CaptureSet& set : CAPTURE_SETS) {
        CSpectrumAnalyzer analyzer;
        MakeReady(analyzer, set);
        const double dBin = static_cast<double>(set.nSampleRate) / set.nBlockSamples;
        for (int nStep = 0; nStep < 64; ++nStep) {
            const double dBins = 20.0 + nStep / 16.0;
            FillSine(analyzer, set, dBins * dBin);
            analyzer.FindPeaks(false, 128);
            EXPECT_NEAR(analyzer.GetPeakFrequencies()[Strongest(analyzer)], dBins * dBin, 0.002 * dBin)
                << dBins;
            if (nStep % 16 == 0) {
                EXPECT_NEAR(analyzer.GetPeakAmplitudes()[Strongest(analyzer)],
                            10000.0 * 0.42 * (set.nBlockSamples - 1) / 2, 0.001 * 2100 * set.nBlockSamples);
            }
        }
    }
}

// 50 Hz lies in bin 4 (43.07 Hz), where the scan begins. Bin 5 (53.83 Hz) needs to beat only its upper
// neighbour; what lies up to 6 Hz below it is accepted, the correction being cut to whole Hz first.
TEST(Peaks, TheLowestBinsFollowTheirOwnRule) {
    CSpectrumAnalyzer analyzer;
    MakeReady(analyzer, CAPTURE_SETS[0]);
    FillSine(analyzer, CAPTURE_SETS[0], 48.1);
    analyzer.FindPeaks(false, 128);
    EXPECT_TRUE(HasPeakNear(analyzer, 48.1));
    FillSine(analyzer, CAPTURE_SETS[0], 46.5);
    analyzer.FindPeaks(false, 128);
    EXPECT_FALSE(HasPeakNear(analyzer, 46.5));
}

TEST(Peaks, TheTimeGateComparesWithHalfTheHop) {
    CSpectrumAnalyzer analyzer;
    MakeReady(analyzer, CAPTURE_SETS[0]);
    FillSine(analyzer, CAPTURE_SETS[0], 440.0);
    analyzer.FindPeaks(true, 2);
    EXPECT_TRUE(HasPeakNear(analyzer, 440.0)) << "the centre of a steady sound lies in the middle: below 1";
    for (const int nHop : {0, 1}) {
        FillSine(analyzer, CAPTURE_SETS[0], 440.0);
        analyzer.FindPeaks(true, nHop);
        EXPECT_EQ(analyzer.GetPeakAmplitudes()[0], 0.0F) << "nothing is less than half of " << nHop;
        FillSine(analyzer, CAPTURE_SETS[0], 440.0);
        analyzer.FindPeaks(false, nHop);
        EXPECT_TRUE(HasPeakNear(analyzer, 440.0));
    }
}

// 30 partials, the amplitudes in no order: the twenty strongest stay, in the order of their frequencies.
TEST(Peaks, TheTwentyStrongestStayInOrder) {
    CSpectrumAnalyzer analyzer;
    MakeReady(analyzer, CAPTURE_SETS[0]);
    std::vector<double> amplitudes;
    std::vector<double> expected;
    for (int n = 1; n <= 30; ++n) {
        amplitudes.push_back(100.0 + 10.0 * (n * 7 % 31));
    }
    std::vector<double> ranked = amplitudes;
    std::sort(ranked.rbegin(), ranked.rend());
    std::fill_n(analyzer.GetInputBuffer(), 1024, 0.0F);
    for (int n = 1; n <= 30; ++n) {
        const double dAmplitude = amplitudes[static_cast<std::size_t>(n - 1)];
        if (dAmplitude >= ranked[19]) {
            expected.push_back(171.0 * n);
        }
        for (int i = 0; i < 1024; ++i) {
            analyzer.GetInputBuffer()[i] +=
                static_cast<float>(dAmplitude * std::sin(2.0 * std::numbers::pi * 171.0 * n * i / 11025 + n));
        }
    }
    analyzer.FindPeaks(false, 128);
    ASSERT_EQ(expected.size(), 20U);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(analyzer.GetPeakFrequencies()[i], expected[i], 0.5);
    }
    // A block with fewer peaks leaves nothing of this one.
    std::fill_n(analyzer.GetInputBuffer(), 1024, 0.0F);
    analyzer.FindPeaks(false, 128);
    for (std::size_t i = 0; i < 20; ++i) {
        EXPECT_EQ(analyzer.GetPeakFrequencies()[i], 0.0F);
        EXPECT_EQ(analyzer.GetPeakAmplitudes()[i], 0.0F);
    }
}

// Two equal clicks half a block apart have a peak at every second bin: 511 of them. Each click is a
// difference of neighbouring samples, so that the amplitude rises with the frequency and the strongest are
// the last.
TEST(Peaks, TheStrongestAreFoundAmongMoreThanFiveHundred) {
    const CaptureSet& set = CAPTURE_SETS[2];
    CSpectrumAnalyzer analyzer;
    MakeReady(analyzer, set);
    float* pfBlock = analyzer.GetInputBuffer();
    const int nQuarter = set.nBlockSamples / 4;
    const auto weight = [&set](int i) {
        const double dPhase = 2.0 * std::numbers::pi * i / (set.nBlockSamples - 1);
        return 0.42 - 0.5 * std::cos(dPhase) + 0.08 * std::cos(2.0 * dPhase);
    };
    std::fill_n(pfBlock, set.nBlockSamples, 0.0F);
    for (const int i : {nQuarter, 3 * nQuarter}) {
        pfBlock[i] = static_cast<float>(20000.0 / weight(i));
        pfBlock[i + 1] = static_cast<float>(-10000.0 / weight(i + 1));
    }
    analyzer.FindPeaks(false, 128);
    const double dBin = 44100.0 / 2048.0;
    for (std::size_t i = 0; i < 20; ++i) {
        const double dBins = 1022.0 - 2.0 * (19.0 - static_cast<double>(i));
        EXPECT_NEAR(analyzer.GetPeakFrequencies()[i], dBins * dBin, 0.5 * dBin) << i;
        // Two clicks of |20000 - 10000 exp(-i w)| each.
        const double dAngle = 2.0 * std::numbers::pi * dBins / 2048.0;
        EXPECT_NEAR(analyzer.GetPeakAmplitudes()[i], 2e4 * std::sqrt(5.0 - 4.0 * std::cos(dAngle)), 10.0)
            << i;
    }
}

}  // namespace
