#include "capture/BlockStore.h"
#include "capture/CaptureThread.h"
#include "platform/multimedia/support/FakeWaveIn.h"
#include "platform/threads/Event.h"
#include "platform/threads/Sleep.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace {

class CaptureFault : public testing::Test {
protected:
    void SetUp() override { m_store.Attach(*m_pCapture, 1024); }
    static std::chrono::milliseconds MeasureStop(CCaptureThread& capture) {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_TRUE(capture.Stop());
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     begin);
    }
    void FeedBuffers(int nBuffers) {
        m_fake->Feed(std::vector<std::int16_t>(static_cast<std::size_t>(nBuffers) * 1024, 1));
    }
    void WaitUntilSomebodyHangs() const {
        for (int i = 0; i < 2000 && !m_fake->IsAnybodyHanging(); ++i) {
            Sleep(5);
        }
        ASSERT_TRUE(m_fake->IsAnybodyHanging());
    }

    CFakeWaveInScope m_fake;
    CBlockStore m_store;
    std::unique_ptr<CCaptureThread> m_pCapture = std::make_unique<CCaptureThread>();
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

TEST_F(CaptureFault, AFailedOneCanBeDestroyed) {
    m_fake->SetDevices({});
    ASSERT_TRUE(m_pCapture->Start());
    EXPECT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Failed);
    m_pCapture.reset();
    EXPECT_EQ(m_store.GetCount(), 0U);
}

TEST_F(CaptureFault, ValuesThatMakeNoBlockFail) {
    struct Values {
        int nBufferSamples;
        int nBlockSamples;
        int nSampleRate;
    };
    for (const Values& values : {Values{0, 1024, 11025}, Values{-5, 1024, 11025}, Values{1024, 0, 11025},
                                 Values{1024, 1024, 0}, Values{2000000000, 1024, 11025}}) {
        m_pCapture->SetBufferSamples(values.nBufferSamples);
        m_pCapture->SetBlockSamples(values.nBlockSamples);
        m_pCapture->SetSampleRate(values.nSampleRate);
        ASSERT_TRUE(m_pCapture->Start());
        EXPECT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Failed);
        m_pCapture->ClearFailed();
    }
    EXPECT_EQ(m_fake->GetCalls().nOpen, 0);
}

TEST_F(CaptureFault, AnAbsurdFirstHopIsBroughtWithinTheRing) {
    m_pCapture->SetHop(0);
    ASSERT_TRUE(m_pCapture->Start());
    EXPECT_EQ(m_pCapture->GetHop(), 1);
    m_pCapture->SetHop(-7);
    ASSERT_TRUE(m_pCapture->Start());
    EXPECT_EQ(m_pCapture->GetHop(), 1);
    m_pCapture->SetHop(1000000000);
    ASSERT_TRUE(m_pCapture->Start());
    EXPECT_EQ(m_pCapture->GetHop(), 40 * 1024);
    ASSERT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Open);
    // It works with that hop, and it stops.
    for (int i = 0; i < 45; ++i) {
        FeedBuffers(1);
        Sleep(2);
    }
    EXPECT_TRUE(m_store.WaitForCount(2));
    EXPECT_LT(MeasureStop(*m_pCapture), 1500ms);
}

TEST_F(CaptureFault, ADeviceThatDeliversNothingStopsAtOnce) {
    m_fake->Stall(true);
    ASSERT_TRUE(m_pCapture->Start());
    ASSERT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Open);
    FeedBuffers(3);
    Sleep(100);
    EXPECT_LT(MeasureStop(*m_pCapture), 700ms);
    EXPECT_EQ(m_store.GetCount(), 0U);
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
}

TEST_F(CaptureFault, ADeviceThatVanishesAndReturnsGoesOn) {
    ASSERT_TRUE(m_pCapture->Start());
    ASSERT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Open);
    for (int i = 0; i < 2000 && m_fake->GetCalls().nStart == 0; ++i) {
        Sleep(5);
    }
    FeedBuffers(2);
    ASSERT_TRUE(m_store.WaitForCount(8));
    m_fake->SetPresent(0, false);
    FeedBuffers(2);
    EXPECT_FALSE(m_store.WaitForCount(9, 1300)) << "longer than one wait of the thread";
    m_fake->SetPresent(0, true);
    FeedBuffers(1);
    EXPECT_TRUE(m_store.WaitForCount(16));
}

TEST_F(CaptureFault, StopWhileTheDeviceIsStillOpening) {
    m_fake->HangOpen(true);
    ASSERT_TRUE(m_pCapture->Start());
    ASSERT_NO_FATAL_FAILURE(WaitUntilSomebodyHangs());
    EXPECT_EQ(m_pCapture->WaitUntilOpen(20), CaptureOpening::Pending);
    CCaptureThread& capture = *m_pCapture;
    std::thread later([this] {
        Sleep(150);
        m_fake->HangOpen(false);
    });
    EXPECT_LT(MeasureStop(capture), 1500ms);
    later.join();
    EXPECT_EQ(m_fake->GetOpenCount(), 0) << "what was opened late is closed again";
    EXPECT_EQ(m_store.GetCount(), 0U);
}

// The bound is 20 ms for each of (hop + 500) samples: ten seconds at a hop of 1.
TEST_F(CaptureFault, AThreadThatHangsInTheDeviceIsAbandonedAndNeverComesBackToItsOwner) {
    m_pCapture->SetHop(1);
    ASSERT_TRUE(m_pCapture->Start());
    ASSERT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Open);
    m_fake->HangClose(true);
    const auto wait = MeasureStop(*m_pCapture);
    EXPECT_GE(wait, 10020ms);
    EXPECT_LT(wait, 13000ms);
    EXPECT_FALSE(m_pCapture->IsRunning());
    EXPECT_FALSE(m_pCapture->IsClientHeld()) << "it was not inside the block callback";
    // The next capture is free of it.
    ASSERT_TRUE(m_pCapture->Start());
    EXPECT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Open);
    m_fake->HangClose(false);
    EXPECT_TRUE(m_pCapture->Stop());
    m_pCapture.reset();
    for (int i = 0; i < 2000 && m_fake->GetOpenCount() > 0; ++i) {
        Sleep(5);
    }
    EXPECT_EQ(m_fake->GetOpenCount(), 0) << "the abandoned thread closes its device in the end";
}

TEST_F(CaptureFault, AThreadThatHangsInTheCallbackIsToldApart) {
    CEvent go;
    CEvent left;
    m_store.SetHook([&](std::size_t) {
        go.Wait(60000);
        left.SetEvent();
    });
    m_pCapture->SetHop(1);
    ASSERT_TRUE(m_pCapture->Start());
    ASSERT_EQ(m_pCapture->WaitUntilOpen(10000), CaptureOpening::Open);
    for (int i = 0; i < 2000 && m_fake->GetCalls().nStart == 0; ++i) {
        Sleep(5);
    }
    FeedBuffers(2);
    ASSERT_TRUE(m_store.WaitForCount(1));
    EXPECT_LT(MeasureStop(*m_pCapture), 13000ms);
    EXPECT_TRUE(m_pCapture->IsClientHeld());
    m_pCapture.reset();
    go.SetEvent();
    EXPECT_TRUE(left.Wait(10000));
    for (int i = 0; i < 2000 && m_fake->GetOpenCount() > 0; ++i) {
        Sleep(5);
    }
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
    EXPECT_EQ(m_store.GetCount(), 1U) << "no block after the owner had gone";
}

}  // namespace
