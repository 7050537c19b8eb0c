// The harmonic sieve on peaks of the test's own choice: which fundamentals it accepts. What follows from its
// rules is compared with the plain sieve; here stand sums worked out by hand, on both sides of each
// threshold.

#include "analysis/AnalyzerTester.h"
#include "analysis/SpectrumAnalyzer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

class Sieve : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_analyzer.Setup(1024, 11025, 20, 7, 24, 50.0F)); }
    // The notes accepted.
    std::vector<NoteReading> Accepted(const std::vector<TestPeak>& peaks) {
        std::vector<NoteReading> accepted = CSpectrumAnalyzerTester(m_analyzer).Sieve(peaks);
        std::erase_if(accepted, [](const NoteReading& note) { return note.strength <= -90.0F; });
        return accepted;
    }

    CSpectrumAnalyzer m_analyzer;
};

TEST_F(Sieve, EachRuleHasItsThreshold) {
    struct Case {
        const char* szWhat;
        std::vector<TestPeak> peaks;
        int nSemitone;
        int nOctave;
        bool bAccepted;
    };
    const std::vector<Case> cases{
        {"half is adjacent", {{110, 400}, {220, 400}}, 9, 2, true},
        {"less is", {{110, 400}, {220, 400}, {440, 1}}, 9, 2, false},
        // A run counts whole but for its ends: 400 / 2 + 400 + 400 / 2 = 800, of a harmonic apart nothing.
        {"800 of 1600 adjacent", {{110, 400}, {220, 400}, {330, 400}, {550, 400}}, 9, 2, true},
        {"800 of 1601 adjacent", {{110, 400}, {220, 400}, {330, 400}, {550, 401}}, 9, 2, false},
        // 0.83 of the energy on even harmonics is the share above which the pitch is an octave up.
        {"1460 of 1760 even", {{110, 200}, {220, 1300}, {330, 100}, {440, 100}, {660, 60}}, 9, 2, true},
        {"1470 of 1770 even", {{110, 200}, {220, 1300}, {330, 100}, {440, 110}, {660, 60}}, 9, 2, false},
        {"so it is the octave", {{110, 200}, {220, 1300}, {330, 100}, {440, 110}, {660, 60}}, 9, 3, true},
        // 0.6 of the energy on multiples of 3.
        {"590 of 1000 threes", {{110, 200}, {220, 200}, {330, 390}, {440, 10}, {660, 200}}, 9, 2, true},
        {"610 of 1000 threes", {{110, 190}, {220, 190}, {330, 400}, {440, 10}, {660, 210}}, 9, 2, false},
        {"so it is the twelfth", {{110, 190}, {220, 190}, {330, 400}, {440, 10}, {660, 210}}, 4, 4, true},
        // Harmonics up to 5 must hold more than a quarter.
        {"1000 of 4000 low", {{110, 500}, {220, 500}, {660, 1000}, {770, 1000}, {880, 1000}}, 9, 2, false},
        {"1001 of 4001 low", {{110, 501}, {220, 500}, {660, 1000}, {770, 1000}, {880, 1000}}, 9, 2, true}};
    for (const Case& c : cases) {
        const auto accepted = Accepted(c.peaks);
        EXPECT_EQ(std::any_of(accepted.begin(), accepted.end(),
                              [&c](const NoteReading& note) { return note.IsNote(c.nSemitone, c.nOctave); }),
                  c.bAccepted)
            << c.szWhat;
    }
}

// The weighted mean of f / h: (100 x 4 + 101 x 3 + 102 x 1) / 8 = 100.625.
TEST_F(Sieve, EachPartialVotesWithItsAmplitude) {
    const auto accepted = Accepted({{100.0F, 4.0e4F}, {202.0F, 3.0e4F}, {306.0F, 1.0e4F}});
    EXPECT_THAT(accepted,
                testing::Contains(testing::Field(&NoteReading::frequency, testing::FloatEq(100.625F))));
}

}  // namespace
