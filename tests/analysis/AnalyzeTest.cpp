// Whole blocks through the whole analysis.

#include "analysis/SpectrumAnalyzer.h"
#include "stage/SyntheticString.h"
#include "support/CaptureSets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>
#include <vector>

namespace {

constexpr int E2 = -29;  // semitones from A4
constexpr int E4 = -5;
constexpr int E6 = 19;

class Analyze : public testing::Test {
protected:
    void MakeReady(const CaptureSet& set) {
        m_set = set;
        ASSERT_TRUE(m_analyzer.Setup(set.nBlockSamples, set.nSampleRate, 20, 7, 24, set.fLowestFrequency));
    }
    void SetUp() override { MakeReady(CAPTURE_SETS[0]); }

    std::vector<NoteReading> Run(const float* pfSamples, bool bTimeGate = false) {
        std::copy_n(pfSamples, m_set.nBlockSamples, m_analyzer.GetInputBuffer());
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
    // A steady sound of the partials given as frequency and amplitude.
    std::vector<NoteReading> RunPartials(const std::vector<std::pair<double, double>>& partials) {
        std::vector<float> block(static_cast<std::size_t>(m_set.nBlockSamples));
        for (std::size_t i = 0; i < block.size(); ++i) {
            double dSum = 0.0;
            for (const auto& [dFrequency, dAmplitude] : partials) {
                const double dTurns = dFrequency * static_cast<double>(i) / m_set.nSampleRate;
                dSum += dAmplitude * std::sin(2.0 * std::numbers::pi * dTurns + dFrequency);
            }
            block[i] = static_cast<float>(dSum);
        }
        return Run(block.data());
    }
    NoteReading RunStrongest(const float* pfSamples) {
        const auto notes = Run(pfSamples);
        const auto itBest = std::max_element(
            notes.begin(), notes.end(),
            [](const auto& left, const auto& right) { return left.strength < right.strength; });
        return itBest != notes.end() ? *itBest : NoteReading::Empty(0);
    }

    CaptureSet m_set{};
    CSpectrumAnalyzer m_analyzer;
};

TEST_F(Analyze, SilenceIsTwelveEmptyCandidates) {
    const std::vector<float> silence(1024);
    EXPECT_TRUE(Run(silence.data()).empty());
}

// Frequencies a good part of a bin away from every bin's centre: in the centre a sine has zeros in all other
// bins, and what is left there is the noise of single precision, whose peaks may fall anywhere.
TEST_F(Analyze, ASineOrOddPartialsAloneAreNoNote) {
    for (const CaptureSet& set : CAPTURE_SETS) {
        MakeReady(set);
        const double dBin = static_cast<double>(set.nSampleRate) / set.nBlockSamples;
        for (int nBins = 6; nBins < 60; nBins += 2) {
            const double f = (nBins + 0.3) * dBin;
            EXPECT_TRUE(RunPartials({{f, 30000.0}}).empty()) << f;
            EXPECT_TRUE(RunPartials({{f, 20000.0}, {3 * f, 6000.0}, {5 * f, 3000.0}}).empty()) << f;
        }
    }
}

TEST_F(Analyze, TheOctaveComesFromThePartials) {
    // Without its fundamental it is still the A of octave 2.
    auto notes = RunPartials({{220, 3000}, {330, 3000}, {440, 3000}});
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_TRUE(notes[0].IsNote(9, 2));
    EXPECT_NEAR(notes[0].cents, 0.0, 0.5);
    // E2 with six partials.
    notes = RunPartials(
        {{82.41, 3000}, {164.82, 2500}, {247.23, 2000}, {329.64, 1500}, {412.05, 1000}, {494.46, 500}});
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_TRUE(notes[0].IsNote(4, 2));
    EXPECT_NEAR(notes[0].cents, 0.0, 0.5);
    // E1 lies below the lower limit: it is taken for its octave.
    std::vector<std::pair<double, double>> partials;
    for (int n = 1; n <= 8; ++n) {
        partials.emplace_back(41.2 * n, 3000.0);
    }
    notes = RunPartials(partials);
    ASSERT_FALSE(notes.empty());
    EXPECT_TRUE(notes[0].IsNote(4, 2));
}

TEST_F(Analyze, NotesOfAChordThatShareNoPartialAreAllThere) {
    const auto notes = RunPartials(
        {{130.8, 3000}, {261.6, 2500}, {392.4, 2000}, {185.0, 3000}, {370.0, 2500}, {555.0, 2000}});
    ASSERT_EQ(notes.size(), 2U);
    EXPECT_TRUE(notes[0].IsNote(0, 3));
    EXPECT_TRUE(notes[1].IsNote(6, 3));
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
    const auto first = Run(guitar.data());
    ASSERT_FALSE(first.empty());
    Run(noise.data());
    EXPECT_EQ(Run(guitar.data()), first);
    const std::vector<float> silence(1024);
    Run(silence.data());
    EXPECT_EQ(Run(guitar.data()), first);
    EXPECT_EQ(Run(guitar.data(), true), first) << "a steady sound passes the time gate";
}

TEST_F(Analyze, TheReferenceMovesTheScaleAndNothingElse) {
    const std::vector<float> a = SyntheticString{.dFrequency = 110.0}.MakeFloats(1024);
    const NoteReading before = RunStrongest(a.data());
    ASSERT_TRUE(m_analyzer.SetReference(432.0F));
    const NoteReading after = RunStrongest(a.data());
    EXPECT_TRUE(after.IsNote(9, 2));
    EXPECT_EQ(after.frequency, before.frequency);
    EXPECT_EQ(after.strength, before.strength);
    EXPECT_NEAR(after.cents - before.cents, 1200.0 * std::log2(440.0 / 432.0), 1e-3);
}

// Every semitone from E2 to E6, in tune and out of tune, at several moments of its life.
struct CentsErrors {
    double dFlattest = 100.0;
    double dSharpest = -100.0;
};

class AnalyzeStrings : public Analyze, public testing::WithParamInterface<std::size_t> {
protected:
    CentsErrors Measure(int nFirst, int nLast, double dStiffness, double dRolloff) {
        CentsErrors errors;
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
                    const NoteReading note = RunStrongest(sound.data() + nStart);
                    const double dHeard = 100.0 * (note.semitone + 12 * note.octave) + note.cents;
                    const double dError = dHeard - (100.0 * (57 + nNote) + dCents);
                    errors.dFlattest = std::min(errors.dFlattest, dError);
                    errors.dSharpest = std::max(errors.dSharpest, dError);
                }
            }
        }
        return errors;
    }
};

TEST_P(AnalyzeStrings, WithoutStiffnessAreReadWithinACent) {
    MakeReady(CAPTURE_SETS[GetParam()]);
    const CentsErrors low = Measure(E2, E4, 0.0, 2.0);
    EXPECT_GE(low.dFlattest, -0.95);
    EXPECT_LE(low.dSharpest, 0.95);
    const CentsErrors high = Measure(E4 + 1, E6, 0.0, 2.0);
    EXPECT_GE(high.dFlattest, -0.25);
    EXPECT_LE(high.dSharpest, 0.25);
}

// Stiff partials lie sharp, and each votes for a fundamental above the first: a stiff string reads a little
// sharp, and must not read sharper than its partials lie. That the error is there at all shows that
// the test can see it.
TEST_P(AnalyzeStrings, StiffOnesReadALittleSharp) {
    MakeReady(CAPTURE_SETS[GetParam()]);
    const CentsErrors errors = Measure(E2, E6, 0.00005, 2.0);
    EXPECT_GE(errors.dFlattest, -0.5);
    EXPECT_LE(errors.dSharpest, 1.5);
    EXPECT_GE(errors.dSharpest, 0.5);
}

// Much brighter than a guitar: many of the twenty peaks lie so high that the bands of neighbouring
// harmonics meet, and some vote for a wrong one. It is cents, never a note or an octave.
TEST_P(AnalyzeStrings, BrightAndStiffOnesStayOnTheirNote) {
    MakeReady(CAPTURE_SETS[GetParam()]);
    const CentsErrors errors = Measure(E2, E6, 0.0001, 1.0);
    EXPECT_GE(errors.dFlattest, -4.0);
    EXPECT_LE(errors.dSharpest, 7.5);
    EXPECT_GE(errors.dSharpest, 5.0);
}

INSTANTIATE_TEST_SUITE_P(AllSets, AnalyzeStrings, testing::Range(std::size_t{0}, CAPTURE_SETS.size()));

}  // namespace
