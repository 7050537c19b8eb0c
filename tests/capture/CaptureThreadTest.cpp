#include "capture/CaptureTest.h"

#include <filesystem>
#include <iterator>

namespace {

class CaptureThread : public CCaptureTest {
protected:
    static auto CountThreads() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    }
};

TEST_F(CaptureThread, BlocksAreLeftOutWhileNewerSoundWaits) {
    m_hook = [this](std::size_t nBlock) {
        if (nBlock == 0) {
            FeedBuffers(1);
        }
    };
    ASSERT_TRUE(Open());
    FeedBuffers(2);
    ASSERT_TRUE(WaitForCount(9));
    EXPECT_FALSE(WaitForCount(10, 30));
    // Block 0 took so long that the third buffer came: the other seven of the first two buffers are late.
    const auto blocks = GetBlocks();
    EXPECT_EQ(blocks[0][0], 0.0F);
    for (std::size_t i = 1; i < 9; ++i) {
        EXPECT_EQ(blocks[i][0], static_cast<float>(896 + i * 128)) << i;
    }
}

TEST_F(CaptureThread, PausedItDeliversNothingAndGoesOnFromTheOldestSound) {
    ASSERT_TRUE(Open());
    m_pCapture->SetPaused(true);
    FeedBuffers(1);
    EXPECT_FALSE(WaitForCount(1, 100));
    FeedBuffers(39);
    EXPECT_FALSE(WaitForCount(1, 100));
    m_pCapture->SetPaused(false);
    // Nothing was lost and nothing is repeated: forty buffers, all that there are, hold 312 steps of 128.
    ASSERT_TRUE(WaitForCount(312));
    EXPECT_FALSE(WaitForCount(313, 30));
    const auto blocks = GetBlocks();
    for (std::size_t i = 0; i < 312; ++i) {
        EXPECT_EQ(blocks[i][0], static_cast<std::int16_t>(i * 128)) << i;
    }
    m_pCapture->SetPaused(true);
    Sleep(60);
    EXPECT_TRUE(m_pCapture->Stop());
    EXPECT_FALSE(m_pCapture->IsRunning());
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
}

TEST_F(CaptureThread, TheRegulatorLengthensTheHopWhileItIsLate) {
    // Each block takes until the next buffer is there.
    m_hook = [this](std::size_t nBlock) {
        if (nBlock < 20) {
            FeedBuffers(1);
        }
    };
    m_pCapture->SetAdaptHop(true);
    ASSERT_TRUE(Open());
    FeedBuffers(2);
    ASSERT_TRUE(WaitForCount(20));
    m_pCapture->Stop();
    EXPECT_GT(m_pCapture->GetHop(), 128) << "the hop outlives the capture";
}

TEST_F(CaptureThread, ASecondStartTakesThePlaceOfTheFirstAndStopMayComeAtAnyTime) {
    EXPECT_TRUE(m_pCapture->Stop());
    ASSERT_TRUE(Open());
    m_pCapture->SetSampleRate(22050);
    m_pCapture->SetDevice(1);
    ASSERT_TRUE(Open());
    EXPECT_EQ(m_fake->GetOpenCount(), 1);
    ASSERT_EQ(m_fake->GetOpenings().size(), 2U);
    EXPECT_EQ(m_fake->GetOpenings()[0].uDeviceId, WAVE_MAPPER);
    EXPECT_EQ(m_fake->GetOpenings()[1].uDeviceId, 0U);
    EXPECT_EQ(m_fake->GetOpenings()[1].nSampleRate, 22050U);
    FeedBuffers(3);
    ASSERT_TRUE(WaitForCount(8));
    EXPECT_TRUE(m_pCapture->Stop());
    EXPECT_TRUE(m_pCapture->Stop());
    const auto calls = m_fake->GetCalls();
    EXPECT_EQ(calls.nStop, 2);
    EXPECT_EQ(calls.nReset, 2);
    EXPECT_EQ(calls.nClose, 2);
    EXPECT_EQ(m_pCapture->WaitUntilOpen(0), CaptureOpening::Failed);
}

TEST_F(CaptureThread, StartingStoppingAndFlagsAtAnyMomentLeaveNothingBehind) {
    ASSERT_TRUE(Open());
    m_pCapture->Stop();
    const auto nBefore = CountThreads();
    m_fake->Play([](std::uint64_t n) { return static_cast<std::int16_t>(n); },
                 {.nChunk = 512, .interval = {}});
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(m_pCapture->Start());
        Sleep(i % 4);
        m_pCapture->SetAdaptHop(i % 2 == 0);
        m_pCapture->SetPaused(i % 3 == 0);
        EXPECT_GE(m_pCapture->GetHop(), 1);
        ASSERT_TRUE(m_pCapture->Stop());
        m_pCapture->SetPaused(false);
    }
    m_fake->StopPlaying();
    EXPECT_EQ(CountThreads(), nBefore);
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
}

}  // namespace
