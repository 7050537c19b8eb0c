// The road of a note without a device: 16-bit samples, blocks a hop apart, the analysis, the strongest
// candidate, the tracker, the reading.

#include "analysis/AnalyzerTester.h"
#include "analysis/NoteTracker.h"
#include "platform/signal/VectorOperations.h"
#include "stage/SyntheticString.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

class Road : public testing::TestWithParam<std::size_t> {
protected:
    void SetUp() override {
        m_set = CAPTURE_SETS.at(GetParam());
        // 11.6 ms from block to block at every rate.
        m_nHop = 128 * m_set.nSampleRate / 11025;
        ASSERT_TRUE(SetUpFor(m_analyzer, m_set));
    }
    int Seconds(double dSeconds) const { return static_cast<int>(dSeconds * m_set.nSampleRate); }

    // The last reading, and the readings on the way to it that were live.
    NoteReading Play(const std::vector<std::int16_t>& samples) {
        NoteReading reading;
        m_live.clear();
        for (int nStart = 0; nStart + m_set.nBlockSamples <= static_cast<int>(samples.size());
             nStart += m_nHop) {
            nspsbIntToFloat(samples.data() + nStart, m_analyzer.GetInputBuffer(), m_set.nBlockSamples, 16, 0);
            const float fLevel = m_analyzer.ComputeLevel();
            m_analyzer.Analyze(false, m_nHop);
            reading = m_tracker.Update(StrongestCandidate(m_analyzer), static_cast<float>(m_nHop),
                                       m_set.nSampleRate, fLevel);
            if (!m_tracker.IsHolding()) {
                m_live.push_back(reading);
            }
        }
        return reading;
    }
    static double Position(const NoteReading& reading) {
        return 100.0 * (reading.semitone + 12 * reading.octave) + reading.cents;
    }

    CaptureSet m_set{};
    int m_nHop = 0;
    CSpectrumAnalyzer m_analyzer;
    CNoteTracker m_tracker;
    std::vector<NoteReading> m_live;
};

// Open strings, fretted and detuned, one after the other with silence between, as a microphone hears them:
// stiff, dying away, with some noise.
TEST_P(Road, EachStringIsNamedAndReadToTwoCents) {
    for (const int nNote : {-29, -24, -19, -14, -10, -5, -2, 7}) {
        for (const double dCents : {-23.0, 12.0}) {
            const SyntheticString string{.dFrequency = NoteFrequency(nNote),
                                         .dCents = dCents,
                                         .dStiffness = 0.00003,
                                         .dDecay = 1.5,
                                         .dNoise = 8.0,
                                         .nSampleRate = m_set.nSampleRate,
                                         .nSeed = static_cast<std::uint32_t>(100 + nNote)};
            const NoteReading reading = Play(string.MakeSamples(Seconds(0.8)));
            EXPECT_FALSE(m_tracker.IsHolding());
            // The tracker adds half a cent.
            const double dExpected = 100.0 * (57 + nNote) + dCents + 0.5;
            EXPECT_NEAR(Position(reading), dExpected, 2.0) << "note " << nNote << ", cents " << dCents;
            // From the first live reading on nothing strays from the note, and it comes within 0.15 s.
            ASSERT_GT(m_live.size(), 50U);
            for (const NoteReading& live : m_live) {
                EXPECT_NEAR(Position(live), dExpected, 3.0);
            }

            // Longer than the longest averaging time.
            const NoteReading held = Play(std::vector<std::int16_t>(static_cast<std::size_t>(Seconds(0.7))));
            EXPECT_TRUE(m_tracker.IsHolding());
            EXPECT_EQ(held, m_live.empty() ? reading : m_live.back());
            EXPECT_EQ(m_tracker.GetLevel(), 0.0F);
        }
    }
}

// What is no note leaves the last reading where it is.
TEST_P(Road, NoiseIsNotRead) {
    const NoteReading reading =
        Play(SyntheticString{.nSampleRate = m_set.nSampleRate}.MakeSamples(Seconds(0.5)));
    EXPECT_TRUE(reading.IsNote(9, 2));
    const NoteReading after = Play(RoundToSamples(MakeNoise(Seconds(1.0), 300.0, 4)));
    EXPECT_TRUE(m_live.empty());
    EXPECT_EQ(after, reading);
}

INSTANTIATE_TEST_SUITE_P(AllSets, Road, testing::Range(std::size_t{0}, CAPTURE_SETS.size()));

}  // namespace
