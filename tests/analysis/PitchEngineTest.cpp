#include "analysis/PitchEngine.h"
#include "platform/multimedia/support/FakeWaveIn.h"
#include "platform/threads/Sleep.h"
#include "stage/SyntheticString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace {

// What the blocks of a capture brought. Written by the callback, read once the capture has stopped.
struct Heard {
    CPitchEngine* pEngine = nullptr;
    std::atomic<int> nBlocks = 0;
    std::array<NoteReading, SEMITONES> last{};
    float fLevel = 0.0F;
    int nHop = 0;
    int nSampleRate = 0;

    static void OnBlock(void* pArg) {
        Heard& heard = *static_cast<Heard*>(pArg);
        const auto candidates = heard.pEngine->GetCandidates();
        std::copy(candidates.begin(), candidates.end(), heard.last.begin());
        heard.fLevel = heard.pEngine->GetLevel();
        heard.nHop = heard.pEngine->GetHop();
        heard.nSampleRate = heard.pEngine->GetSampleRate();
        ++heard.nBlocks;
    }
};

class PitchEngine : public testing::Test {
protected:
    // A period of the sound goes round without a seam: 110.25 Hz are 100 samples.
    void Play(double dPeak) {
        m_fake->Play([sound = SyntheticString{.dFrequency = 110.25, .dPeak = dPeak}.MakeSamples(1000)](
                         std::uint64_t nSample) { return sound[nSample % sound.size()]; },
                     {.nChunk = 1024, .interval = std::chrono::milliseconds(2)});
    }
    bool Start(int nBlockSamples = 1024) {
        return m_engine.Start(&Heard::OnBlock, &m_heard, 0, 11025, 1024, nBlockSamples, 50.0F);
    }
    bool WaitForBlocks(int nMore) const {
        const int nUntil = m_heard.nBlocks + nMore;
        for (int i = 0; i < 2000 && m_heard.nBlocks < nUntil; ++i) {
            Sleep(5);
        }
        return m_heard.nBlocks >= nUntil;
    }

    CFakeWaveInScope m_fake;
    Heard m_heard{.pEngine = &m_engine};  // before the engine, which may still call it while it ends
    CPitchEngine m_engine;
};

// The owner's thread changes all it may while blocks are analysed: the thread sanitizer watches.
TEST_F(PitchEngine, BlocksAreAnalysedBeforeTheClientIsCalled) {
    Play(12000.0);
    m_engine.SetHop(200);
    ASSERT_TRUE(Start());
    m_engine.SetAdaptHop(false);
    for (int i = 0; i < 100; ++i) {
        m_engine.SetReference(static_cast<float>(430 + i % 21));
        m_engine.SetTimeGate(i % 2 == 0);
        Sleep(1);
    }
    m_engine.SetReference(441.0F);
    m_engine.SetTimeGate(false);
    EXPECT_TRUE(WaitForBlocks(20));
    EXPECT_TRUE(m_engine.Stop());
    EXPECT_FALSE(m_engine.Stop());
    EXPECT_TRUE(m_heard.last[9].IsNote(9, 2));
    EXPECT_NEAR(m_heard.last[9].cents, 0.0, 0.5);
    EXPECT_GT(m_heard.fLevel, 0.7F);
    EXPECT_EQ(m_heard.nHop, 200);
    EXPECT_EQ(m_heard.nSampleRate, 11025);
    const int nBlocks = m_heard.nBlocks;
    Sleep(50);
    EXPECT_EQ(m_heard.nBlocks, nBlocks);
}

TEST_F(PitchEngine, AStartStopsWhatRunsBeforeAnythingElse) {
    Play(12000.0);
    ASSERT_TRUE(Start());
    EXPECT_TRUE(WaitForBlocks(2));
    EXPECT_FALSE(Start(1000)) << "no power of two";
    EXPECT_FALSE(m_engine.Stop()) << "the capture must have been stopped";
    ASSERT_TRUE(Start());
    ASSERT_TRUE(Start(512));
    EXPECT_TRUE(WaitForBlocks(2));
    EXPECT_EQ(m_fake->GetOpenCount(), 1);
    // Another sound, and nothing of the one before.
    m_engine.Stop();
    Play(0.0);
    ASSERT_TRUE(Start());
    EXPECT_TRUE(WaitForBlocks(3));
    m_engine.Stop();
    EXPECT_EQ(m_heard.last[9], NoteReading::Empty(9));
    EXPECT_EQ(m_heard.fLevel, 0.0F);
}

// Silence that never comes, so that the machine keeps up with ease.
TEST_F(PitchEngine, AdaptsTheHopWhenAsked) {
    m_engine.SetHop(128);
    m_engine.SetAdaptHop(true);
    ASSERT_TRUE(Start());
    for (int i = 0; i < 2000 && m_engine.GetCapture().GetHop() == 128; ++i) {
        Sleep(5);
    }
    EXPECT_LT(m_engine.GetCapture().GetHop(), 128);
}

}  // namespace
