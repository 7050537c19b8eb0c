// What comes before any peak: set-up, windows, level, reference.

#include "analysis/SpectrumAnalyzer.h"
#include "stage/SyntheticString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace {

constexpr int BLOCK = 1024;
constexpr int RATE = 11025;

class SpectrumFrontEnd : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_analyzer.Setup(BLOCK, RATE, 20, 7, 24, 50.0F)); }
    void FillBlock(float fValue) { std::fill_n(m_analyzer.GetInputBuffer(), BLOCK, fValue); }
    float LevelOfOneSample(float fValue) {
        FillBlock(0.0F);
        m_analyzer.GetInputBuffer()[300] = fValue;
        return m_analyzer.ComputeLevel();
    }

    CSpectrumAnalyzer m_analyzer;
};

// A single sample of 1 shows the windows' values: bin 0 of each spectrum is the sum over the block.
TEST_F(SpectrumFrontEnd, WindowsHaveTheirClosedForms) {
    double dSlopeSum = 0.0;
    std::vector<double> slopes;
    for (int i = 0; i < BLOCK; ++i) {
        FillBlock(0.0F);
        m_analyzer.GetInputBuffer()[i] = 1.0F;
        m_analyzer.TransformBlock(true);
        const double dPhase = 2.0 * std::numbers::pi * i / (BLOCK - 1);
        const double dBlackman = 0.42 - 0.5 * std::cos(dPhase) + 0.08 * std::cos(2.0 * dPhase);
        EXPECT_NEAR(m_analyzer.GetSpectrum()[0], dBlackman, 1e-6);
        // From -1 to +1 over the block.
        EXPECT_NEAR(m_analyzer.GetRampSpectrum()[0], dBlackman * (2.0 * i / (BLOCK - 1) - 1.0), 1e-6);
        // The derivative of the window of one point more, halfway between two points, per second, over 2 pi:
        // (R / N) (0.5 sin x - 0.16 sin 2x). The difference of neighbours meets it to second order.
        const double dHalfway = 2.0 * std::numbers::pi * (i + 0.5) / BLOCK;
        const double dSlope =
            static_cast<double>(RATE) / BLOCK * (0.5 * std::sin(dHalfway) - 0.16 * std::sin(2.0 * dHalfway));
        slopes.push_back(m_analyzer.GetSlopeSpectrum()[0]);
        EXPECT_NEAR(slopes.back(), dSlope, 3e-4);
        dSlopeSum += slopes.back();
    }
    EXPECT_NEAR(dSlopeSum, 0.0, 1e-3);
    for (std::size_t i = 0; i < slopes.size(); ++i) {
        EXPECT_NEAR(slopes[i], -slopes[slopes.size() - 1 - i], 3e-4) << i;
    }
}

// Without scaling: a sine of amplitude A in the centre of a bin gives A sum(w) / 2, and sum(w) = 0.42 (N -
// 1).
TEST_F(SpectrumFrontEnd, AmplitudesAreUnscaled) {
    for (int i = 0; i < BLOCK; ++i) {
        m_analyzer.GetInputBuffer()[i] =
            static_cast<float>(32767.0 * std::sin(2.0 * std::numbers::pi * 100.0 * i / BLOCK));
    }
    m_analyzer.TransformBlock(false);
    const auto spectrum = m_analyzer.GetSpectrum();
    EXPECT_NEAR(std::hypot(spectrum[200], spectrum[201]), 32767.0 * 0.42 * 1023 / 2, 100.0);
}

TEST_F(SpectrumFrontEnd, LevelIsThePeakOnALogarithmicScale) {
    FillBlock(0.0F);
    EXPECT_EQ(m_analyzer.ComputeLevel(), 0.0F);
    EXPECT_EQ(LevelOfOneSample(32767.0F), 1.0F);
    EXPECT_EQ(LevelOfOneSample(-32768.0F), 1.0F);
    // 1 + 10 ln(1/2) / 60
    EXPECT_NEAR(LevelOfOneSample(-16384.0F), 0.884475, 1e-6);
    EXPECT_NEAR(LevelOfOneSample(16383.5F), 0.884475, 1e-6);
    // e^-6 of full scale is 81.2.
    EXPECT_EQ(LevelOfOneSample(81.0F), 0.0F);
    EXPECT_NEAR(LevelOfOneSample(82.0F), 0.00159, 1e-5);
    // The larger side counts, each by its own full scale.
    FillBlock(0.0F);
    m_analyzer.GetInputBuffer()[0] = 1000.0F;
    m_analyzer.GetInputBuffer()[BLOCK - 1] = -20000.0F;
    EXPECT_NEAR(m_analyzer.ComputeLevel(), 1.0 + 10.0 * std::log(20000.0 / 32768.0) / 60.0, 1e-6);
}

TEST_F(SpectrumFrontEnd, ReferenceOutsideTheLimitsChangesNothing) {
    EXPECT_TRUE(m_analyzer.SetReference(432.0F));
    EXPECT_NEAR(m_analyzer.MakeReading(432.0F, 1.0F).cents, 0.0, 1e-4);
    EXPECT_FALSE(m_analyzer.SetReference(30.0F));
    EXPECT_FALSE(m_analyzer.SetReference(20000.0F));
    EXPECT_NEAR(m_analyzer.MakeReading(432.0F, 1.0F).cents, 0.0, 1e-4);
}

// One set-up after another, sizes that are no power of two between them.
TEST(SpectrumAnalyzerSetup, EachStandsForItself) {
    const std::vector<float> sound = SyntheticString{.dFrequency = 146.8}.MakeFloats(2048);
    const auto analyze = [&sound](CSpectrumAnalyzer& analyzer, int nBlock) {
        std::copy_n(sound.begin(), nBlock, analyzer.GetInputBuffer());
        EXPECT_TRUE(analyzer.Analyze(false, 128));
        return std::vector<NoteReading>(analyzer.GetCandidates().begin(), analyzer.GetCandidates().end());
    };
    CSpectrumAnalyzer fresh;
    ASSERT_TRUE(fresh.Setup(1024, RATE, 20, 7, 24, 50.0F));
    const auto expected = analyze(fresh, 1024);
    EXPECT_TRUE(expected[2].IsNote(2, 3));

    CSpectrumAnalyzer used;
    used.Clear();
    EXPECT_EQ(used.MakeReading(440.0F, 1.0F), NoteReading::Empty(0)) << "no notes, no reading";
    for (const int nBlock : {1000, 0, -8, 1023, 3}) {
        EXPECT_FALSE(used.Setup(nBlock, RATE, 20, 7, 24, 50.0F)) << nBlock;
    }
    // As small as a block can be.
    for (const int nBlock : {1, 2, 4}) {
        ASSERT_TRUE(used.Setup(nBlock, RATE, 20, 7, 24, 50.0F)) << nBlock;
        for (const NoteReading& candidate : analyze(used, nBlock)) {
            EXPECT_EQ(candidate.strength, -90.0F);
        }
    }
    ASSERT_TRUE(used.Setup(2048, 44100, 20, 7, 24, 35.0F));
    analyze(used, 2048);
    ASSERT_TRUE(used.Setup(1024, RATE, 20, 7, 24, 50.0F));
    ASSERT_TRUE(used.Setup(1024, RATE, 20, 7, 24, 50.0F));
    EXPECT_EQ(analyze(used, 1024), expected);
    used.Clear();
    used.Clear();
    ASSERT_TRUE(used.Setup(1024, RATE, 20, 7, 24, 50.0F));
    EXPECT_EQ(analyze(used, 1024), expected);
}

}  // namespace
