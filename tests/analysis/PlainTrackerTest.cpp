// The tracker against its plainest form, frame by frame and to the last bit.

#include "analysis/NoteTracker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <deque>
#include <random>

namespace {

constexpr std::size_t REMEMBERED = 1024;

struct Frame {
    float fPosition = 0.0F;
    float fSmoothed = 0.0F;
    NoteReading candidate;
    float fHop = 0.0F;
    float fLevel = 0.0F;
};

// A history with the newest frame in front, walked anew for every frame.
class CPlainTracker {
public:
    NoteReading Update(const NoteReading& candidate, float fHop, int nSampleRate, float fLevel) {
        const double dFrameTime = static_cast<float>(static_cast<double>(fHop) / nSampleRate);
        const int nSettleFrames = static_cast<int>(static_cast<double>(0.1F) / dFrameTime);
        const int nStableFrames = static_cast<int>(static_cast<double>(0.03F) / dFrameTime);
        const auto fPosition =
            static_cast<float>(100.0 * (candidate.semitone + 12 * candidate.octave) + candidate.cents + 50.0);
        m_frames.push_front({fPosition, 0.0F, candidate, fHop, fLevel});
        m_frames.pop_back();
        m_nFilled = std::min(m_nFilled + 1, static_cast<int>(REMEMBERED));

        const auto itBefore = m_frames.begin() + 1;
        const int nLookedAt = std::min(nStableFrames, static_cast<int>(REMEMBERED) - 1);
        const bool bStable = std::all_of(itBefore, itBefore + nLookedAt, [fPosition](const Frame& frame) {
            return std::abs(static_cast<double>(frame.fPosition) - fPosition) <= 60.0;
        });
        bool bHoldNext = m_bHolding;
        if (m_bHolding && bStable && candidate.strength > -27.0F) {
            bHoldNext = false;
            m_nSettle = nSettleFrames;
            m_nFilled = std::clamp(nStableFrames, 1, static_cast<int>(REMEMBERED));
        } else if (!m_bHolding && (!bStable || candidate.strength < -30.0F)) {
            bHoldNext = true;
        }

        Average(nSampleRate);
        m_frames[0].fSmoothed = m_fAverage;
        Adapt(nSettleFrames);
        m_fAverage = static_cast<float>(m_fAverage + 0.5);
        Calm();
        const int nOctave = static_cast<int>(m_fAverage) / 1200;
        const double dInOctave = static_cast<double>(m_fAverage) - 1200 * nOctave;
        const int nSemitone = static_cast<int>(dInOctave) / 100;
        m_bHolding = bHoldNext;
        if (!m_bHolding) {
            const auto fCents = static_cast<float>(dInOctave - 100 * nSemitone - 50.0);
            m_lastReading = {{nSemitone, nOctave}, fCents, m_fStrength, m_fFrequency};
        }
        return m_lastReading;
    }
    bool IsHolding() const { return m_bHolding; }
    float GetLevel() const { return m_fLevel; }

private:
    void Average(int nSampleRate) {
        Frame sum;
        int n = 0;
        while (sum.fHop < static_cast<double>(nSampleRate) * TIMES.at(m_nStep) && n < m_nFilled) {
            const Frame& frame = m_frames[static_cast<std::size_t>(n++)];
            sum.fHop += frame.fHop;
            sum.fPosition += frame.fPosition;
            sum.candidate.strength += frame.candidate.strength;
            sum.candidate.frequency += frame.candidate.frequency;
            sum.fLevel += frame.fLevel;
        }
        const auto fCount = static_cast<float>(n);
        m_fAverage = sum.fPosition / fCount;
        m_fStrength = sum.candidate.strength / fCount;
        m_fFrequency = sum.candidate.frequency / fCount;
        m_fLevel = sum.fLevel / fCount;
    }
    double Step(std::size_t nFrom, std::size_t nTo) const {
        return std::abs(static_cast<double>(m_frames[nFrom].fSmoothed) - m_frames[nTo].fSmoothed);
    }
    void Adapt(int nSettleFrames) {
        const int nFrames = std::min(std::max(nSettleFrames, 5), m_nFilled);
        const auto nOldest = static_cast<std::size_t>(nFrames) - 1;
        float fWay = 0.0F;
        for (std::size_t i = 0; i < nOldest; ++i) {
            fWay = static_cast<float>(fWay + Step(i, i + 1));
        }
        const auto fRoughness = static_cast<float>((fWay - Step(0, nOldest)) / nFrames);
        if (m_bHolding || nSettleFrames >= m_nFilled || m_nSettle-- > 0) {
            m_nSettle = std::max(m_nSettle, 0);
            return;
        }
        if (fRoughness < 0.005 && m_nStep > 0) {
            --m_nStep;
        } else if (fRoughness > 0.01 && m_nStep < TIMES.size() - 1) {
            ++m_nStep;
        }
        m_nSettle = 2 * nSettleFrames;
    }
    void Calm() {
        const int nCent = static_cast<int>(m_fAverage);
        if (nCent != m_cents[0]) {
            m_cents = {nCent, m_cents[0], m_cents[1]};
            m_runs = {nCent == m_cents[2] ? m_runs[1] : 0, m_runs[0], m_runs[1]};
        }
        ++m_runs[0];
        if (m_cents[2] == m_cents[0] && std::abs(m_cents[0] - m_cents[1]) == 1) {
            m_fAverage = static_cast<float>(m_runs[0] > m_runs[1] ? m_cents[0] : m_cents[1]);
        } else {
            m_runs = {m_runs[0], 0, 0};
        }
    }

    static constexpr std::array TIMES{0.05F, 0.1F, 0.25F, 0.5F};
    std::deque<Frame> m_frames = std::deque<Frame>(REMEMBERED);
    int m_nFilled = 0;
    bool m_bHolding = false;
    int m_nSettle = 0;
    std::size_t m_nStep = 0;
    float m_fAverage = 0.0F;
    float m_fStrength = 0.0F;
    float m_fFrequency = 0.0F;
    float m_fLevel = 0.0F;
    std::array<int, 3> m_cents = {-200, -100, -300};
    std::array<int, 3> m_runs = {};
    NoteReading m_lastReading;
};

// A pitch that wanders, trembles, jumps and goes away, heard by hops that change.
class CPlayer {
public:
    explicit CPlayer(unsigned nSeed) : m_generator(nSeed) {}

    struct Heard {
        NoteReading candidate;
        float fHop;
        float fLevel;
    };
    Heard Play() {
        if (Roll(60)) {
            constexpr std::array hops{1.0F, 7.0F, 40.0F, 128.0F, 129.5F, 330.0F, 552.0F, 1024.0F};
            m_fHop = hops.at(m_generator() % hops.size());
        }
        if (Roll(40)) {
            m_dTremble = std::pow(10.0, Between(-4.0, 1.5));
        }
        if (Roll(80)) {
            m_dPitch += Between(-150.0, 150.0);
        }
        m_dGlide = Roll(30) ? Between(-0.2, 0.2) : m_dGlide;
        m_dPitch = std::clamp(m_dPitch + m_dGlide, 1800.0, 6000.0);
        m_dStrength = std::clamp(m_dStrength + Between(-0.7, 0.7), -34.0, -20.0);
        const double dPosition = m_dPitch + Between(-m_dTremble, m_dTremble);
        const int nNote = static_cast<int>(dPosition) / 100;
        const NoteReading candidate{{nNote % 12, nNote / 12},
                                    static_cast<float>(dPosition - 100.0 * nNote - 50.0),
                                    static_cast<float>(m_dStrength),
                                    static_cast<float>(dPosition / 10.0)};
        return {Roll(50) ? NoteReading::Empty(nNote % 12) : candidate, m_fHop,
                static_cast<float>(Between(0.0, 1.0))};
    }

private:
    double Between(double dLow, double dHigh) {
        return dLow + (dHigh - dLow) * static_cast<double>(m_generator()) / 4294967296.0;
    }
    bool Roll(unsigned nSides) { return m_generator() % nSides == 0; }

    std::mt19937 m_generator;
    float m_fHop = 128.0F;
    double m_dTremble = 0.1;
    double m_dPitch = 3000.0;
    double m_dGlide = 0.0;
    double m_dStrength = -22.0;
};

TEST(PlainTracker, GivesTheSameReadingsForWhateverIsPlayed) {
    int nLive = 0;
    for (unsigned nSeed = 1; nSeed <= 300; ++nSeed) {
        CPlayer player(nSeed);
        CPlainTracker plain;
        CNoteTracker tracker;
        const int nSampleRate = std::array{11025, 22050, 44100}.at(nSeed % 3);
        for (int i = 0; i < 1500; ++i) {
            const auto [candidate, fHop, fLevel] = player.Play();
            ASSERT_EQ(tracker.Update(candidate, fHop, nSampleRate, fLevel),
                      plain.Update(candidate, fHop, nSampleRate, fLevel))
                << nSeed << ", frame " << i;
            ASSERT_EQ(tracker.IsHolding(), plain.IsHolding()) << nSeed << ", frame " << i;
            ASSERT_EQ(tracker.GetLevel(), plain.GetLevel()) << nSeed << ", frame " << i;
            nLive += static_cast<int>(!plain.IsHolding());
        }
    }
    EXPECT_GT(nLive, 150000);
}

}  // namespace
