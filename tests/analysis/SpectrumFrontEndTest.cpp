// What comes before any peak: set-up, windows, level, reference.

#include "analysis/SpectrumAnalyzer.h"
#include "stage/SyntheticString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
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

    CSpectrumAnalyzer m_analyzer;
};

// A single sample of 1 shows the windows' values: bin 0 of each spectrum is the sum over the block. Nothing
// is scaled.
TEST_F(SpectrumFrontEnd, WindowsHaveTheirClosedForms) {
    double dSlopeSum = 0.0;
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
        EXPECT_NEAR(m_analyzer.GetSlopeSpectrum()[0], dSlope, 3e-4);
        dSlopeSum += m_analyzer.GetSlopeSpectrum()[0];
    }
    EXPECT_NEAR(dSlopeSum, 0.0, 1e-3);
}

TEST_F(SpectrumFrontEnd, LevelIsThePeakOnALogarithmicScale) {
    // The first sample, the last, and the level: 1 + 10 ln(1/2) / 60 at half of full scale, and 0 below e^-6
    // of it, which is 81.2. The larger side counts, each by its own full scale.
    for (const auto& [fFirst, fLast, fLevel] :
         std::vector<std::array<float, 3>>{{0.0F, 0.0F, 0.0F},
                                           {32767.0F, 0.0F, 1.0F},
                                           {0.0F, -32768.0F, 1.0F},
                                           {-16384.0F, 0.0F, 0.884475F},
                                           {0.0F, 16383.5F, 0.884475F},
                                           {81.0F, 0.0F, 0.0F},
                                           {82.0F, 0.0F, 0.0015903F},
                                           {1000.0F, -16384.0F, 0.884475F}}) {
        FillBlock(0.0F);
        m_analyzer.GetInputBuffer()[0] = fFirst;
        m_analyzer.GetInputBuffer()[BLOCK - 1] = fLast;
        EXPECT_NEAR(m_analyzer.ComputeLevel(), fLevel, 1e-6) << fFirst << " and " << fLast;
    }
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
    used.Clear();
    ASSERT_TRUE(used.Setup(1024, RATE, 20, 7, 24, 50.0F));
    EXPECT_EQ(analyze(used, 1024), expected);
}

}  // namespace
