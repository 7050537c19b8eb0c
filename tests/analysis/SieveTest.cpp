// The harmonic sieve on peaks of the test's own choice: which fundamentals it accepts.

#include "analysis/AnalyzerTester.h"
#include "analysis/SpectrumAnalyzer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

class Sieve : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_analyzer.Setup(1024, 11025, 20, 7, 24, 50.0F)); }
    // The notes accepted.
    std::vector<NoteReading> Accepted(const std::vector<TestPeak>& peaks) {
        std::vector<NoteReading> accepted;
        for (const NoteReading& candidate : CSpectrumAnalyzerTester(m_analyzer).Sieve(peaks)) {
            if (candidate.strength > -90.0F) {
                accepted.push_back(candidate);
            }
        }
        return accepted;
    }
    bool Accepts(const std::vector<TestPeak>& peaks, int nSemitone, int nOctave) {
        const auto accepted = Accepted(peaks);
        return std::any_of(accepted.begin(), accepted.end(),
                           [=](const NoteReading& note) { return note.IsNote(nSemitone, nOctave); });
    }

    CSpectrumAnalyzer m_analyzer;
};

TEST_F(Sieve, NothingComesOfNothing) {
    EXPECT_THAT(Accepted({}), testing::IsEmpty());
}

// Two neighbours hold exactly half of the score as adjacent, in whatever proportion.
TEST_F(Sieve, TheFirstTwoHarmonicsAreEnough) {
    for (const float fSecond : {1.0e3F, 1.0e5F, 1.7e5F}) {
        const auto accepted = Accepted({{110.0F, 1.0e5F}, {220.0F, fSecond}});
        ASSERT_EQ(accepted.size(), 1U) << fSecond;
        EXPECT_TRUE(accepted[0].IsNote(9, 2));
        EXPECT_FLOAT_EQ(accepted[0].frequency, 110.0F);
        EXPECT_NEAR(accepted[0].strength, 10.0 * std::log((1.0e5 + fSecond) / 3.0e6), 1e-4);
    }
}

TEST_F(Sieve, HarmonicsWithoutNeighboursAreNoNote) {
    EXPECT_THAT(Accepted({{110.0F, 1.0e6F}}), testing::IsEmpty());
    EXPECT_THAT(Accepted({{110.0F, 9.0e5F}, {330.0F, 3.0e5F}, {550.0F, 1.8e5F}}), testing::IsEmpty());
}

// 0.83 of the energy on even harmonics is the share above which the pitch is an octave up.
TEST_F(Sieve, EnoughEvenHarmonicsMakeItTheOctave) {
    // Odd 200 + 100, even 1300 + 100 + 60: 0.8295 of 1760.
    const std::vector<TestPeak> below = {{110, 200}, {220, 1300}, {330, 100}, {440, 100}, {660, 60}};
    EXPECT_TRUE(Accepts(below, 9, 2));
    // Even 1300 + 110 + 60: 0.8305 of 1770.
    const std::vector<TestPeak> above = {{110, 200}, {220, 1300}, {330, 100}, {440, 110}, {660, 60}};
    EXPECT_FALSE(Accepts(above, 9, 2));
    EXPECT_TRUE(Accepts(above, 9, 3));
}

// 0.6 of the energy on multiples of 3.
TEST_F(Sieve, EnoughThirdHarmonicsMakeItTheTwelfth) {
    const std::vector<TestPeak> below = {{110, 200}, {220, 200}, {330, 390}, {440, 10}, {660, 200}};
    EXPECT_TRUE(Accepts(below, 9, 2)) << "590 of 1000";
    const std::vector<TestPeak> above = {{110, 190}, {220, 190}, {330, 400}, {440, 10}, {660, 210}};
    EXPECT_FALSE(Accepts(above, 9, 2)) << "610 of 1000";
    EXPECT_TRUE(Accepts(above, 4, 4));
}

// Harmonics up to 5 must hold more than a quarter.
TEST_F(Sieve, LowHarmonicsMustCarryAQuarter) {
    const auto peaks = [](float fFirst) {
        return std::vector<TestPeak>{{110, fFirst}, {220, 500}, {660, 1000}, {770, 1000}, {880, 1000}};
    };
    EXPECT_FALSE(Accepts(peaks(500), 9, 2)) << "exactly 1000 of 4000";
    EXPECT_TRUE(Accepts(peaks(501), 9, 2));
}

// Half of the score must be adjacent: a run counts whole but for its ends, of a harmonic by itself nothing.
TEST_F(Sieve, HalfMustBeAdjacent) {
    // Harmonics 1 and 2: (400 + 400) / 2; 4: nothing. Score 800 + x.
    EXPECT_TRUE(Accepts({{110, 400}, {220, 400}, {440, 0}}, 9, 2));
    EXPECT_FALSE(Accepts({{110, 400}, {220, 400}, {440, 1}}, 9, 2));
    // 1, 2, 3: 400 / 2 + 400 + 400 / 2 = 800 of 1200, so that 400 more may stand apart.
    EXPECT_TRUE(Accepts({{110, 400}, {220, 400}, {330, 400}, {550, 400}}, 9, 2));
    EXPECT_FALSE(Accepts({{110, 400}, {220, 400}, {330, 400}, {550, 401}}, 9, 2));
}

TEST_F(Sieve, OfTwoPeaksInABandTheStrongerCounts) {
    for (const float fBeside : {108.6F, 111.4F}) {
        std::vector<TestPeak> peaks = {{110.0F, 1.0e5F}, {fBeside, 5.0e4F}, {220.0F, 1.0e5F}};
        if (fBeside < 110.0F) {
            std::swap(peaks[0], peaks[1]);
        }
        const auto accepted = Accepted(peaks);
        ASSERT_FALSE(accepted.empty());
        EXPECT_FLOAT_EQ(accepted[0].frequency, 110.0F);
        EXPECT_NEAR(accepted[0].strength, 10.0 * std::log(2.0e5 / 3.0e6), 1e-4);
    }
}

// The weighted mean of f / h: (100 x 4 + 101 x 3 + 102 x 1) / 8 = 100.625.
TEST_F(Sieve, EachPartialVotesWithItsAmplitude) {
    const auto accepted = Accepted({{100.0F, 4.0e4F}, {202.0F, 3.0e4F}, {306.0F, 1.0e4F}});
    EXPECT_THAT(accepted,
                testing::Contains(testing::Field(&NoteReading::frequency, testing::FloatEq(100.625F))));
}

// However high a peak lies, the search for its octave ends, and nothing lies above half the sample rate.
TEST_F(Sieve, TheSearchEnds) {
    float f = 51.0F;
    while (f < 5512.5F) {
        EXPECT_THAT(Accepted({{f, 1.0e5F}}), testing::IsEmpty()) << f;
        f *= 1.0037F;
    }
}

// A note is stronger than what it is up against only strictly: past the top of the scale the first one stays.
TEST_F(Sieve, PastTheTopOfTheScaleThereIsOneStrength) {
    const auto accepted = Accepted({{110.0F, 4.0e6F}, {220.0F, 3.0e6F}, {330.0F, 2.0e6F}});
    ASSERT_EQ(accepted.size(), 1U);
    EXPECT_EQ(accepted[0].strength, 0.0F);
}

}  // namespace
