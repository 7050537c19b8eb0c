#include "capture/BlockStore.h"
#include "capture/CaptureThread.h"
#include "platform/multimedia/support/FakeWaveIn.h"
#include "platform/threads/Event.h"
#include "platform/threads/Sleep.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <iterator>
#include <numeric>
#include <vector>

using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

class CaptureThread : public testing::Test {
protected:
    bool StartCapture(int nHop = 128) {
        m_capture.SetHop(nHop);
        m_store.Attach(m_capture, 1024);
        const int nStarts = m_fake->GetCalls().nStart;
        if (!m_capture.Start() || m_capture.WaitUntilOpen(10000) != CaptureOpening::Open) {
            return false;
        }
        for (int i = 0; i < 2000 && m_fake->GetCalls().nStart == nStarts; ++i) {
            Sleep(5);
        }
        return m_fake->GetCalls().nStart == nStarts + 1;
    }
    // Whole buffers of a ramp that goes on from call to call.
    void FeedBuffers(int nBuffers) {
        std::vector<std::int16_t> ramp(static_cast<std::size_t>(nBuffers) * 1024);
        std::iota(ramp.begin(), ramp.end(), m_nNext);
        m_nNext = static_cast<std::int16_t>(m_nNext + nBuffers * 1024);
        m_fake->Feed(ramp);
    }
    static auto CountThreads() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    }

    CFakeWaveInScope m_fake;
    CBlockStore m_store;
    CCaptureThread m_capture;
    std::int16_t m_nNext = 0;
};

TEST_F(CaptureThread, TheFirstBlockNeedsTwoBuffersThenEightFollowEach) {
    ASSERT_TRUE(StartCapture());
    EXPECT_TRUE(m_capture.IsRunning());
    FeedBuffers(1);
    EXPECT_FALSE(m_store.WaitForCount(1, 30));
    FeedBuffers(1);
    ASSERT_TRUE(m_store.WaitForCount(8));
    FeedBuffers(1);
    ASSERT_TRUE(m_store.WaitForCount(16));
    EXPECT_FALSE(m_store.WaitForCount(17, 30));
    std::vector<int> expected(16);
    for (int i = 0; i < 16; ++i) {
        expected[static_cast<std::size_t>(i)] = i * 128;
    }
    EXPECT_THAT(m_store.GetFirstSamples(), ElementsAreArray(expected));
    EXPECT_EQ(m_capture.GetHop(), 128) << "without the regulator the hop stays";
}

TEST_F(CaptureThread, BlocksAreLeftOutWhileNewerSoundWaits) {
    m_store.SetHook([this](std::size_t nBlock) {
        if (nBlock == 0) {
            FeedBuffers(1);
        }
    });
    ASSERT_TRUE(StartCapture());
    FeedBuffers(2);
    ASSERT_TRUE(m_store.WaitForCount(9));
    EXPECT_FALSE(m_store.WaitForCount(10, 30));
    // Block 0 took so long that the third buffer came: the other seven of the first two buffers are late.
    EXPECT_THAT(m_store.GetFirstSamples(), ElementsAre(0, 1024, 1152, 1280, 1408, 1536, 1664, 1792, 1920));
}

TEST_F(CaptureThread, AHopLongerThanABufferPassesWholeBuffersOver) {
    ASSERT_TRUE(StartCapture(3000));
    for (int i = 0; i < 12; ++i) {
        FeedBuffers(1);
        Sleep(2);
    }
    ASSERT_TRUE(m_store.WaitForCount(4));
    EXPECT_THAT(m_store.GetFirstSamples(), ElementsAre(0, 3000, 6000, 9000));
    // All buffers that were passed went back to the device: sixty more than its queue had find room.
    for (int i = 0; i < 100; ++i) {
        FeedBuffers(1);
        Sleep(1);
    }
    EXPECT_TRUE(m_store.WaitForCount(30));
}

TEST_F(CaptureThread, PausedItDeliversNothingAndGoesOnFromTheOldestSound) {
    m_store.SetHook([this](std::size_t nBlock) { m_capture.SetPaused(nBlock == 7); });
    ASSERT_TRUE(StartCapture());
    FeedBuffers(2);
    ASSERT_TRUE(m_store.WaitForCount(8));
    FeedBuffers(5);
    EXPECT_FALSE(m_store.WaitForCount(9, 200));
    m_capture.SetPaused(false);
    ASSERT_TRUE(m_store.WaitForCount(48));
    EXPECT_FALSE(m_store.WaitForCount(49, 30));
    // Nothing was lost and nothing is repeated: seven buffers hold 48 steps of 128.
    std::vector<int> expected(48);
    for (int i = 0; i < 48; ++i) {
        expected[static_cast<std::size_t>(i)] = i * 128;
    }
    EXPECT_THAT(m_store.GetFirstSamples(), ElementsAreArray(expected));
}

TEST_F(CaptureThread, StopsWhilePaused) {
    ASSERT_TRUE(StartCapture());
    m_capture.SetPaused(true);
    Sleep(60);
    EXPECT_TRUE(m_capture.Stop());
    EXPECT_FALSE(m_capture.IsRunning());
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
}

TEST_F(CaptureThread, TheRegulatorShortensTheHopWhileItWaits) {
    m_capture.SetAdaptHop(true);
    ASSERT_TRUE(StartCapture());
    for (int i = 0; i < 2000 && m_capture.GetHop() == 128; ++i) {
        Sleep(1);
    }
    EXPECT_EQ(m_capture.GetHop(), 127) << "128 x 0.995 = 127.36";
    FeedBuffers(1);
    for (int i = 0; i < 2000 && m_capture.GetHop() == 127; ++i) {
        Sleep(1);
    }
    EXPECT_EQ(m_capture.GetHop(), 126) << "127.36 x 0.995 = 126.72";
}

TEST_F(CaptureThread, TheRegulatorLengthensTheHopWhileItIsLate) {
    // Each block takes until the next buffer is there.
    m_store.SetHook([this](std::size_t nBlock) {
        if (nBlock < 20) {
            FeedBuffers(1);
        }
    });
    m_capture.SetAdaptHop(true);
    ASSERT_TRUE(StartCapture());
    FeedBuffers(2);
    ASSERT_TRUE(m_store.WaitForCount(20));
    EXPECT_GT(m_capture.GetHop(), 128);
    m_capture.Stop();
    EXPECT_GT(m_capture.GetHop(), 128) << "the hop outlives the capture";
}

TEST_F(CaptureThread, ASecondStartTakesThePlaceOfTheFirst) {
    ASSERT_TRUE(StartCapture());
    m_capture.SetSampleRate(22050);
    m_capture.SetDevice(1);
    ASSERT_TRUE(StartCapture());
    EXPECT_EQ(m_fake->GetOpenCount(), 1);
    EXPECT_EQ(m_fake->GetCalls().nClose, 1);
    ASSERT_EQ(m_fake->GetOpenings().size(), 2U);
    EXPECT_EQ(m_fake->GetOpenings()[0].uDeviceId, WAVE_MAPPER);
    EXPECT_EQ(m_fake->GetOpenings()[1].uDeviceId, 0U);
    EXPECT_EQ(m_fake->GetOpenings()[1].nSampleRate, 22050U);
    FeedBuffers(2);
    EXPECT_TRUE(m_store.WaitForCount(8));
}

TEST_F(CaptureThread, StopGivesEverythingBackAndMayComeAtAnyTime) {
    EXPECT_TRUE(m_capture.Stop());
    ASSERT_TRUE(StartCapture());
    FeedBuffers(3);
    ASSERT_TRUE(m_store.WaitForCount(8));
    EXPECT_TRUE(m_capture.Stop());
    EXPECT_TRUE(m_capture.Stop());
    const auto calls = m_fake->GetCalls();
    EXPECT_EQ(calls.nStop, 1);
    EXPECT_EQ(calls.nReset, 1);
    EXPECT_EQ(calls.nClose, 1);
    EXPECT_EQ(m_capture.WaitUntilOpen(0), CaptureOpening::Failed);
}

TEST_F(CaptureThread, StartingAndStoppingAtAnyMomentLeavesNothingBehind) {
    ASSERT_TRUE(StartCapture());
    m_capture.Stop();
    const auto nBefore = CountThreads();
    m_fake->Play([](std::uint64_t n) { return static_cast<std::int16_t>(n); },
                 {.nChunk = 512, .interval = {}});
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(m_capture.Start());
        Sleep(i % 4);
        m_capture.SetPaused(i % 3 == 0);
        ASSERT_TRUE(m_capture.Stop());
        m_capture.SetPaused(false);
    }
    m_fake->StopPlaying();
    EXPECT_EQ(CountThreads(), nBefore);
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
}

TEST_F(CaptureThread, FlagsMayChangeWhileSoundComes) {
    ASSERT_TRUE(StartCapture());
    m_fake->Play([](std::uint64_t n) { return static_cast<std::int16_t>(n); },
                 {.nChunk = 512, .interval = {}});
    for (int i = 0; i < 50; ++i) {
        m_capture.SetAdaptHop(i % 2 == 0);
        m_capture.SetPaused(i % 7 == 0);
        EXPECT_GE(m_capture.GetHop(), 1);
        Sleep(2);
    }
    m_capture.SetPaused(false);
    EXPECT_TRUE(m_store.WaitForCount(m_store.GetCount() + 20));
}

}  // namespace
