#pragma once

#include "capture/CaptureThread.h"
#include "platform/multimedia/support/FakeWaveIn.h"
#include "platform/threads/Sleep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <numeric>
#include <vector>

// A capture on a fake device that is fed by hand, and the blocks that it delivers.
class CCaptureTest : public testing::Test {
protected:
    using Block = std::vector<float>;

    CCaptureTest() { Attach(1024); }

    // Makes a new capture, for blocks of that length, and forgets the blocks of the one before.
    void Attach(int nBlockSamples) {
        m_pCapture = std::make_unique<CCaptureThread>();
        m_blocks.clear();
        m_nFed = 0;
        m_destination.assign(static_cast<std::size_t>(nBlockSamples), 0.5F);
        m_pCapture->SetBlockSamples(nBlockSamples);
        m_pCapture->SetDestination(m_destination.data());
        m_pCapture->SetBlockCallback([](void* pArg) { static_cast<CCaptureTest*>(pArg)->OnBlock(); }, this);
    }
    // Starts it, and waits until the device records.
    bool Open() {
        const int nStarts = m_fake->GetCalls().nStart;
        return m_pCapture->Start() && m_pCapture->WaitUntilOpen(10000) == CaptureOpening::Open &&
               WaitUntil([&] { return m_fake->GetCalls().nStart == nStarts + 1; });
    }
    // The next samples of a ramp that begins with 0.
    void Feed(std::size_t nSamples) {
        std::vector<std::int16_t> ramp(nSamples);
        std::iota(ramp.begin(), ramp.end(), static_cast<std::int16_t>(m_nFed));
        m_nFed += nSamples;
        m_fake->Feed(ramp);
    }
    void FeedBuffers(std::size_t nBuffers) { Feed(nBuffers * 1024); }

    // True once there are that many blocks.
    bool WaitForCount(std::size_t nCount, int nMilliseconds = 10000) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::milliseconds(nMilliseconds),
                                  [&] { return m_blocks.size() >= nCount; });
    }
    std::vector<Block> GetBlocks() {
        const std::lock_guard lock(m_mutex);
        return m_blocks;
    }
    template <class Condition>
    static bool WaitUntil(Condition&& condition) {
        for (int i = 0; i < 10000 && !condition(); ++i) {
            Sleep(1);
        }
        return condition();
    }

    const CFakeWaveInScope m_fake;
    std::size_t m_nFed = 0;
    // What else to do, on the capture thread, at each block; nBlock counts from 0.
    std::function<void(std::size_t nBlock)> m_hook;

private:
    void OnBlock() {
        std::unique_lock lock(m_mutex);
        const std::size_t nBlock = m_blocks.size();
        m_blocks.push_back(m_destination);
        m_changed.notify_all();
        lock.unlock();
        // What a block leaves behind must not be seen in the next one.
        std::fill(m_destination.begin(), m_destination.end(), 0.5F);
        if (m_hook) {
            m_hook(nBlock);
        }
    }

    Block m_destination;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Block> m_blocks;

protected:
    std::unique_ptr<CCaptureThread> m_pCapture;  // goes first
};
