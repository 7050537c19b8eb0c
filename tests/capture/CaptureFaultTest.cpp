#include "capture/CaptureTest.h"
#include "platform/threads/Event.h"

#include <chrono>
#include <thread>
#include <tuple>
#include <utility>

using namespace std::chrono_literals;

namespace {

class CaptureFault : public CCaptureTest {
protected:
    std::chrono::milliseconds MeasureStop() {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_TRUE(m_pCapture->Stop());
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     begin);
    }
    bool IsDeviceClosedInTheEnd() const {
        return WaitUntil([this] { return m_fake->GetOpenCount() == 0; });
    }
};

TEST_F(CaptureFault, ARefusalIsToldAndClearedAway) {
    m_fake->SetDevices({{.refusedRates = {11025}}});
    ASSERT_TRUE(m_pCapture->Start()) << "the thread runs; the device is another matter";
    EXPECT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Failed);
    EXPECT_FALSE(m_pCapture->IsRunning());
    EXPECT_TRUE(m_pCapture->Stop());
    EXPECT_FALSE(m_pCapture->Start()) << "the thread that failed is still held";
    m_pCapture->ClearFailed();
    m_pCapture->SetSampleRate(22050);
    ASSERT_TRUE(m_pCapture->Start());
    EXPECT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Open);
    m_pCapture->ClearFailed();
    EXPECT_TRUE(m_pCapture->IsRunning()) << "a running one is not touched";
    EXPECT_EQ(m_pCapture->WaitUntilOpen(0), CaptureOpening::Open) << "it may be asked again";
}

// The last one is destroyed as it has failed.
TEST_F(CaptureFault, ValuesThatMakeNoBlockFail) {
    for (const auto& [nBuffer, nBlock, nRate] : {std::tuple(0, 1024, 11025),
                                                 {-5, 1024, 11025},
                                                 {1024, 0, 11025},
                                                 {1024, 1024, 0},
                                                 {2000000000, 1024, 11025}}) {
        m_pCapture->ClearFailed();
        m_pCapture->SetBufferSamples(nBuffer);
        m_pCapture->SetBlockSamples(nBlock);
        m_pCapture->SetSampleRate(nRate);
        ASSERT_TRUE(m_pCapture->Start());
        EXPECT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Failed)
            << nBuffer << ' ' << nBlock << ' ' << nRate;
    }
    EXPECT_EQ(m_fake->GetCalls().nOpen, 0);
}

TEST_F(CaptureFault, AnAbsurdFirstHopIsBroughtWithinTheRing) {
    for (const auto& [nWanted, nHop] : {std::pair(0, 1), {-7, 1}, {1000000000, 40 * 1024}}) {
        m_pCapture->SetHop(nWanted);
        ASSERT_TRUE(Open());
        EXPECT_EQ(m_pCapture->GetHop(), nHop);
    }
    // It works with that hop.
    for (int i = 0; i < 45; ++i) {
        FeedBuffers(1);
        Sleep(2);
    }
    EXPECT_TRUE(WaitForCount(2));
}

TEST_F(CaptureFault, ADeviceThatVanishesAndReturnsGoesOnAndStopsAtOnceWhileItIsGone) {
    ASSERT_TRUE(Open());
    FeedBuffers(2);
    ASSERT_TRUE(WaitForCount(8));
    m_fake->SetPresent(0, false);
    FeedBuffers(2);
    EXPECT_FALSE(WaitForCount(9, 1300)) << "longer than one wait of the thread";
    m_fake->SetPresent(0, true);
    FeedBuffers(1);
    EXPECT_TRUE(WaitForCount(16));
    m_fake->SetPresent(0, false);
    Sleep(100);
    EXPECT_LT(MeasureStop(), 900ms) << "as long as one wait of the thread";
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
}

TEST_F(CaptureFault, StopWhileTheDeviceIsStillOpening) {
    m_fake->HangOpen(true);
    ASSERT_TRUE(m_pCapture->Start());
    ASSERT_TRUE(WaitUntil([this] { return m_fake->IsAnybodyHanging(); }));
    EXPECT_EQ(m_pCapture->WaitUntilOpen(20), CaptureOpening::Pending);
    const std::jthread later([this] {
        Sleep(150);
        m_fake->HangOpen(false);
    });
    EXPECT_LT(MeasureStop(), 5000ms) << "not the bound of 12.5 s";
    EXPECT_EQ(m_fake->GetOpenCount(), 0) << "what was opened late is closed again";
    EXPECT_TRUE(GetBlocks().empty());
}

// The bound is 20 ms for each of (hop + 500) samples: ten seconds at a hop of 1.
TEST_F(CaptureFault, AThreadThatHangsInTheDeviceIsAbandonedAndNeverComesBackToItsOwner) {
    m_pCapture->SetHop(1);
    ASSERT_TRUE(Open());
    m_fake->HangClose(true);
    const auto wait = MeasureStop();
    EXPECT_GE(wait, 10020ms);
    EXPECT_LT(wait, 13000ms);
    EXPECT_FALSE(m_pCapture->IsRunning());
    EXPECT_FALSE(m_pCapture->IsClientHeld()) << "it was not inside the block callback";
    // The next capture is free of it, and has its values.
    ASSERT_TRUE(Open());
    EXPECT_EQ(m_pCapture->GetHop(), 1);
    FeedBuffers(2);
    EXPECT_TRUE(WaitForCount(1));
    m_fake->HangClose(false);
    EXPECT_TRUE(m_pCapture->Stop());
    m_pCapture.reset();
    EXPECT_TRUE(IsDeviceClosedInTheEnd()) << "also by the abandoned thread";
}

TEST_F(CaptureFault, AThreadThatHangsInTheCallbackIsToldApart) {
    CEvent go;
    CEvent left;
    m_hook = [&](std::size_t) {
        go.Wait(60000);
        left.SetEvent();
    };
    m_pCapture->SetHop(1);
    ASSERT_TRUE(Open());
    FeedBuffers(2);
    ASSERT_TRUE(WaitForCount(1));
    EXPECT_LT(MeasureStop(), 13000ms);
    EXPECT_TRUE(m_pCapture->IsClientHeld());
    EXPECT_FALSE(m_pCapture->Start()) << "two threads at one destination";
    m_pCapture.reset();
    go.SetEvent();
    EXPECT_TRUE(left.Wait(10000));
    EXPECT_TRUE(IsDeviceClosedInTheEnd());
    EXPECT_EQ(GetBlocks().size(), 1U) << "no block after the owner had gone";
}

}  // namespace
