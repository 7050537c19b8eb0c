// The analyser against its plainest form, on sounds of every kind.

#include "analysis/AnalyzerTester.h"
#include "analysis/PlainAnalysis.h"
#include "stage/SyntheticString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace {

// What the candidates must be for fundamentals accepted in this order: of each semitone the first of the
// strongest.
std::vector<NoteReading> Publish(CSpectrumAnalyzer& analyzer,
                                 const std::vector<PlainFundamental>& fundamentals) {
    std::vector<NoteReading> notes;
    notes.reserve(SEMITONES);
    for (int i = 0; i < SEMITONES; ++i) {
        notes.push_back(NoteReading::Empty(i));
    }
    for (const PlainFundamental& fundamental : fundamentals) {
        const NoteReading note = analyzer.MakeReading(fundamental.fFrequency, fundamental.fRawStrength);
        NoteReading& place = notes.at(static_cast<std::size_t>(note.semitone));
        if (note.strength > place.strength) {
            place = note;
        }
    }
    return notes;
}

class PlainComparison : public testing::TestWithParam<std::size_t> {
protected:
    void SetUp() override { ASSERT_TRUE(SetUpFor(m_analyzer, m_set)); }
    // The number of fundamentals that were accepted.
    std::size_t Compare(const std::vector<float>& block) {
        std::copy(block.begin(), block.end(), m_analyzer.GetInputBuffer());
        m_analyzer.FindPeaks(false, 128);
        const auto peaks =
            FindPeaksPlainly(m_analyzer.GetSpectrum(), m_analyzer.GetSlopeSpectrum(), m_settings);
        for (std::size_t i = 0; i < 20; ++i) {
            EXPECT_EQ(m_analyzer.GetPeakFrequencies()[i], i < peaks.size() ? peaks[i].fFrequency : 0.0F);
            EXPECT_EQ(m_analyzer.GetPeakAmplitudes()[i], i < peaks.size() ? peaks[i].fAmplitude : 0.0F);
        }
        return CompareSieves(peaks);
    }
    std::size_t CompareSieves(const std::vector<TestPeak>& peaks) {
        const auto fundamentals = SievePlainly(peaks, m_settings);
        EXPECT_EQ(CSpectrumAnalyzerTester(m_analyzer).Sieve(peaks), Publish(m_analyzer, fundamentals));
        return fundamentals.size();
    }

    const CaptureSet m_set = CAPTURE_SETS.at(GetParam());
    const PlainSettings m_settings{m_set.nBlockSamples, m_set.nSampleRate, m_set.fLowestFrequency};
    CSpectrumAnalyzer m_analyzer;
};

TEST_P(PlainComparison, Sounds) {
    std::size_t nAccepted = 0;
    for (std::uint32_t nSeed = 1; nSeed <= 150; ++nSeed) {
        const SyntheticString string{.dFrequency = 60.0 * std::exp2(nSeed / 30.0),
                                     .dStiffness = nSeed % 3 * 0.00005,
                                     .dRolloff = 1.0 + nSeed % 4 * 0.5,
                                     .dNoise = nSeed % 5 * 100.0,
                                     .nSampleRate = m_set.nSampleRate,
                                     .nSeed = nSeed};
        const auto samples = string.MakeSamples(m_set.nBlockSamples);
        nAccepted += Compare({samples.begin(), samples.end()});
        Compare(MakeNoise(m_set.nBlockSamples, 10000.0, nSeed));
    }
    EXPECT_GT(nAccepted, 300U);
}

// Peaks on and near the harmonics of one or two fundamentals and at random, with amplitudes of small whole
// numbers, so that sums lie right at the thresholds again and again.
TEST_P(PlainComparison, PeaksAtTheThresholds) {
    std::mt19937 generator(7);
    const auto below = [&generator](std::uint32_t nLimit) { return static_cast<int>(generator() % nLimit); };
    const int nHighest = m_set.nSampleRate / 2;
    std::size_t nAccepted = 0;
    for (int nRound = 0; nRound < 20000; ++nRound) {
        const double dFirst = m_set.fLowestFrequency * (1.0 + 0.01 * below(500));
        const double dSecond = m_set.fLowestFrequency * (1.0 + 0.01 * below(500));
        std::vector<TestPeak> peaks;
        const auto nPeaks = std::size_t{1} + static_cast<std::size_t>(below(20));
        while (peaks.size() < nPeaks) {
            const double dBase = below(4) == 0 ? dSecond : dFirst;
            const double dOff = below(3) == 0 ? 1.0 + 0.0001 * (below(600) - 300) : 1.0;
            const auto fFrequency = static_cast<float>(dBase * (1 + below(24)) * dOff);
            if (fFrequency < static_cast<float>(nHighest)) {
                peaks.push_back({fFrequency, static_cast<float>(1000 * (1 + below(6)))});
            }
        }
        std::sort(peaks.begin(), peaks.end(),
                  [](const TestPeak& a, const TestPeak& b) { return a.fFrequency < b.fFrequency; });
        nAccepted += CompareSieves(peaks);
        ASSERT_FALSE(HasFailure()) << "round " << nRound;
    }
    EXPECT_GT(nAccepted, 5000U);
}

INSTANTIATE_TEST_SUITE_P(AllSets, PlainComparison, testing::Range(std::size_t{0}, std::size_t{4}));

}  // namespace
