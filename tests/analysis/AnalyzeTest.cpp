// Whole blocks through the whole analysis.

#include "analysis/AnalyzerTester.h"
#include "stage/SyntheticString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace {

constexpr int E2 = -29;  // semitones from A4
constexpr int E4 = -5;
constexpr int E6 = 19;

class Analyze : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(SetUpFor(m_analyzer, m_set)); }

    // The notes found in the block that stands ready.
    std::vector<NoteReading> Run(bool bTimeGate = false) {
        EXPECT_TRUE(m_analyzer.Analyze(bTimeGate, 128));
        std::vector<NoteReading> notes;
        for (int i = 0; i < SEMITONES; ++i) {
            const NoteReading& candidate = m_analyzer.GetCandidates()[static_cast<std::size_t>(i)];
            EXPECT_EQ(candidate.semitone, i);
            if (candidate.strength > -90.0F) {
                notes.push_back(candidate);
            } else {
                EXPECT_EQ(candidate, NoteReading::Empty(i));
            }
        }
        EXPECT_LE(notes.size(), 4U);
        return notes;
    }
    std::vector<NoteReading> Run(const std::vector<float>& block, bool bTimeGate = false) {
        std::copy(block.begin(), block.end(), m_analyzer.GetInputBuffer());
        return Run(bTimeGate);
    }
    std::vector<NoteReading> RunPartials(const std::vector<std::pair<double, double>>& partials) {
        FillPartials(m_analyzer, m_set, partials);
        return Run();
    }

    CaptureSet m_set = CAPTURE_SETS[0];
    CSpectrumAnalyzer m_analyzer;
};

// Frequencies a good part of a bin away from every bin's centre: in the centre a sine has zeros in all other
// bins, and what is left there is the noise of single precision, whose peaks may fall anywhere.
TEST_F(Analyze, ASineOrOddPartialsAloneAreNoNote) {
    for (const CaptureSet& set : CAPTURE_SETS) {
        m_set = set;
        SetUp();
        const double dBin = static_cast<double>(set.nSampleRate) / set.nBlockSamples;
        for (int nBins = 6; nBins < 60; nBins += 2) {
            const double f = (nBins + 0.3) * dBin;
            EXPECT_TRUE(RunPartials({{f, 30000.0}}).empty()) << f;
            EXPECT_TRUE(RunPartials({{f, 20000.0}, {3 * f, 6000.0}, {5 * f, 3000.0}}).empty()) << f;
        }
    }
}

TEST_F(Analyze, NotesAreKnownByTheirPartials) {
    struct Case {
        const char* szWhat;
        std::vector<std::pair<double, double>> partials;
        std::vector<StringNote> notes;
    };
    const std::vector<Case> cases{
        {"A2 without its fundamental", {{220, 3000}, {330, 3000}, {440, 3000}}, {{9, 2}}},
        {"E2",
         {{82.41, 3000}, {164.82, 2500}, {247.23, 2000}, {329.64, 1500}, {412.05, 1000}, {494.46, 500}},
         {{4, 2}}},
        {"E1, below the lower limit, as its octave",
         {{41.2, 3000}, {82.4, 3000}, {123.6, 3000}, {164.8, 3000}, {206, 3000}, {247.2, 3000}},
         {{4, 2}}},
        {"C3 and F#3, which share no partial",
         {{130.8, 3000}, {261.6, 2500}, {392.4, 2000}, {185.0, 3000}, {370.0, 2500}, {555.0, 2000}},
         {{0, 3}, {6, 3}}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        const auto notes = RunPartials(c.partials);
        EXPECT_TRUE(std::equal(notes.begin(), notes.end(), c.notes.begin(), c.notes.end(),
                               [](const StringNote& a, const StringNote& b) { return a == b; }));
        for (const NoteReading& note : notes) {
            EXPECT_NEAR(note.cents, 0.0, 0.5);
        }
    }
}

TEST_F(Analyze, StrengthIsTheSumOfTheMagnitudes) {
    // Three partials in bins' centres: each A x 0.42 x 1023 / 2.
    const double dBin = 11025.0 / 1024.0;
    const auto notes = RunPartials({{20 * dBin, 2000}, {40 * dBin, 1000}, {60 * dBin, 500}});
    ASSERT_FALSE(notes.empty());
    EXPECT_NEAR(notes[0].strength, 10.0 * std::log(3500.0 * 0.42 * 1023.0 / 2.0 / 3.0e6), 0.02);
}

TEST_F(Analyze, ABlockKnowsNothingOfTheOneBefore) {
    const std::vector<float> guitar = SyntheticString{.dFrequency = 196.0, .dNoise = 40.0}.MakeFloats(1024);
    const std::vector<float> noise = MakeNoise(1024, 20000.0, 9);
    const auto first = Run(guitar);
    ASSERT_FALSE(first.empty());
    Run(noise);
    EXPECT_EQ(Run(guitar), first);
    const std::vector<float> silence(1024);
    Run(silence);
    EXPECT_EQ(Run(guitar), first);
    EXPECT_EQ(Run(guitar, true), first) << "a steady sound passes the time gate";
}

// Every semitone from E2 to E6, in tune and out of tune, at several moments of its life.
class AnalyzeStrings : public Analyze, public testing::WithParamInterface<std::size_t> {
protected:
    AnalyzeStrings() { m_set = CAPTURE_SETS.at(GetParam()); }
    // The worst errors, flat and sharp, in cents.
    std::pair<double, double> Measure(int nFirst, int nLast, double dStiffness, double dRolloff) {
        double dFlattest = 100.0;
        double dSharpest = -100.0;
        for (int nNote = nFirst; nNote <= nLast; ++nNote) {
            for (const double dCents : {-40.0, -17.0, 0.0, 23.0, 45.0}) {
                const SyntheticString string{.dFrequency = NoteFrequency(nNote),
                                             .dCents = dCents,
                                             .dStiffness = dStiffness,
                                             .dDecay = 2.0,
                                             .dRolloff = dRolloff,
                                             .nSampleRate = m_set.nSampleRate,
                                             .nSeed = static_cast<std::uint32_t>(nNote + 100)};
                const std::vector<float> sound = string.MakeFloats(3 * m_set.nBlockSamples);
                for (const int nStart : {0, 700, 2 * m_set.nBlockSamples}) {
                    std::copy_n(sound.data() + nStart, m_set.nBlockSamples, m_analyzer.GetInputBuffer());
                    Run();
                    const NoteReading note = StrongestCandidate(m_analyzer);
                    const double dHeard = 100.0 * (note.semitone + 12 * note.octave) + note.cents;
                    const double dError = dHeard - (100.0 * (57 + nNote) + dCents);
                    dFlattest = std::min(dFlattest, dError);
                    dSharpest = std::max(dSharpest, dError);
                }
            }
        }
        return {dFlattest, dSharpest};
    }
};

TEST_P(AnalyzeStrings, AreReadWithinTheErrorsOfTheirPartials) {
    struct Case {
        const char* szWhat;
        int nFirst;
        int nLast;
        double dStiffness;
        double dRolloff;
        double dFlattest;
        double dLeastSharp;
        double dSharpest;
    };
    for (const Case& c :
         {Case{"low strings without stiffness", E2, E4, 0.0, 2.0, -0.95, -100.0, 0.95},
          {"high strings without stiffness", E4 + 1, E6, 0.0, 2.0, -0.25, -100.0, 0.25},
          // Stiff partials lie sharp, and each votes for a fundamental above the first: a stiff string reads
          // a little sharp, and must not read sharper than its partials lie. That the error is there at all
          // shows that the test can see it.
          {"stiff strings", E2, E6, 0.00005, 2.0, -0.5, 0.5, 1.5},
          // Much brighter than a guitar: many of the twenty peaks lie so high that the bands of neighbouring
          // harmonics meet, and some vote for a wrong one. It is cents, never a note or an octave.
          {"bright and stiff strings", E2, E6, 0.0001, 1.0, -4.0, 5.0, 7.5}}) {
        SCOPED_TRACE(c.szWhat);
        const auto [dFlattest, dSharpest] = Measure(c.nFirst, c.nLast, c.dStiffness, c.dRolloff);
        EXPECT_GE(dFlattest, c.dFlattest);
        EXPECT_LE(dSharpest, c.dSharpest);
        EXPECT_GE(dSharpest, c.dLeastSharp);
    }
}

INSTANTIATE_TEST_SUITE_P(AllSets, AnalyzeStrings, testing::Range(std::size_t{0}, CAPTURE_SETS.size()));

}  // namespace
