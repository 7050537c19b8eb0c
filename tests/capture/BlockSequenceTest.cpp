#include "capture/BlockStore.h"
#include "capture/CaptureThread.h"
#include "platform/multimedia/support/FakeWaveIn.h"
#include "platform/threads/Sleep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

// Whatever the rhythm in which sound arrives, the blocks are those that a flat recording would give.

namespace {

std::int16_t SampleAt(std::uint64_t nSample) {
    return static_cast<std::int16_t>(nSample * 7919 % 65521 - 32768);
}

// The recording as one piece. A block is due as soon as the buffer in which it ends, and in which the sample
// behind it would lie, is complete.
class CFlatModel {
public:
    CFlatModel(int nBufferSamples, int nBlockSamples, float fHop)
        : m_nBuffer(static_cast<std::uint64_t>(nBufferSamples)),
          m_nBlock(static_cast<std::uint64_t>(nBlockSamples)),
          m_fHop(fHop) {}

    // Where the blocks begin that are due after that many samples.
    std::vector<std::uint64_t> Due(std::uint64_t nSamples) const {
        std::vector<std::uint64_t> starts;
        const std::uint64_t nBuffers = nSamples / m_nBuffer;
        // Positions are floats counted from the oldest buffer that is still needed.
        std::uint64_t nBase = 0;
        float fStart = 0.0F;
        auto fEnd = static_cast<float>(m_nBlock);
        for (;;) {
            while (fStart >= static_cast<float>(m_nBuffer) && nBase < nBuffers) {
                fStart -= static_cast<float>(m_nBuffer);
                fEnd -= static_cast<float>(m_nBuffer);
                ++nBase;
            }
            if (nBase + static_cast<std::uint64_t>(fEnd) / m_nBuffer + 1 > nBuffers) {
                return starts;
            }
            starts.push_back(nBase * m_nBuffer + static_cast<std::uint64_t>(fStart));
            fStart += m_fHop;
            fEnd += m_fHop;
        }
    }
    CBlockStore::Block At(std::uint64_t nStart) const {
        CBlockStore::Block block;
        for (std::uint64_t i = 0; i < m_nBlock; ++i) {
            block.push_back(static_cast<float>(SampleAt(nStart + i)));
        }
        return block;
    }

private:
    const std::uint64_t m_nBuffer;
    const std::uint64_t m_nBlock;
    const float m_fHop;
};

// A capture on a fake device, fed by hand.
class CFedCapture {
public:
    CFedCapture(int nBufferSamples, int nBlockSamples, int nHop) {
        m_capture.SetBufferSamples(nBufferSamples);
        m_capture.SetHop(nHop);
        m_store.Attach(m_capture, nBlockSamples);
    }
    bool Start() {
        return m_capture.Start() && m_capture.WaitUntilOpen(10000) == CaptureOpening::Open && IsRecording();
    }
    void Feed(std::size_t nSamples) {
        std::vector<std::int16_t> samples(nSamples);
        std::generate(samples.begin(), samples.end(), [this] { return SampleAt(m_nFed++); });
        m_fake->Feed(samples);
    }
    std::uint64_t GetFed() const { return m_nFed; }
    CCaptureThread& GetCapture() { return m_capture; }
    CBlockStore& GetStore() { return m_store; }

private:
    bool IsRecording() const {
        for (int i = 0; i < 2000 && m_fake->GetCalls().nStart == 0; ++i) {
            Sleep(5);
        }
        return m_fake->GetCalls().nStart == 1;
    }

    const CFakeWaveInScope m_fake;
    CBlockStore m_store;
    CCaptureThread m_capture;
    std::uint64_t m_nFed = 0;
};

void ExpectBlocks(CFedCapture& capture, const CFlatModel& model) {
    const auto starts = model.Due(capture.GetFed());
    const auto blocks = capture.GetStore().GetBlocks();
    ASSERT_EQ(blocks.size(), starts.size());
    for (std::size_t i = 0; i < starts.size(); ++i) {
        ASSERT_EQ(blocks[i], model.At(starts[i])) << "block " << i << " from sample " << starts[i];
    }
}

// Feeds in pieces of any size, always waiting for what is due, so that no block is late.
void FeedAndCompare(CFedCapture& capture, const CFlatModel& model, std::size_t nTotal,
                    std::size_t nLongestPiece, std::mt19937& random) {
    while (capture.GetFed() < nTotal) {
        capture.Feed(std::uniform_int_distribution<std::size_t>(1, nLongestPiece)(random));
        ASSERT_TRUE(capture.GetStore().WaitForCount(model.Due(capture.GetFed()).size()));
    }
    Sleep(5);  // a block too many would come now
    ASSERT_NO_FATAL_FAILURE(ExpectBlocks(capture, model));
}

TEST(BlockSequence, AnyRhythmGivesTheBlocksOfAFlatRecording) {
    std::mt19937 random(31);
    const auto pick = [&](int nLow, int nHigh) { return std::uniform_int_distribution(nLow, nHigh)(random); };
    for (int nRound = 0; nRound < 60; ++nRound) {
        const int nBuffer = pick(1, 300);
        const int nBlock = pick(1, std::min(700, 20 * nBuffer));
        const int nHop = pick(1, 3 * nBuffer);
        SCOPED_TRACE(testing::Message() << "round " << nRound << ": buffer " << nBuffer << ", block "
                                        << nBlock << ", hop " << nHop);
        CFedCapture capture(nBuffer, nBlock, nHop);
        ASSERT_TRUE(capture.Start());
        // No more than one buffer at once: with two, blocks between them would be late.
        ASSERT_NO_FATAL_FAILURE(FeedAndCompare(capture, CFlatModel(nBuffer, nBlock, static_cast<float>(nHop)),
                                               static_cast<std::size_t>(nBuffer) * 100,
                                               static_cast<std::size_t>(nBuffer), random));
    }
}

// One turn of the regulator before anything is recorded makes the hop 127.36: blocks then begin between
// samples.
TEST(BlockSequence, AFractionalHopKeepsItsFraction) {
    CFedCapture capture(1024, 1024, 128);
    capture.GetCapture().SetAdaptHop(true);
    ASSERT_TRUE(capture.Start());
    for (int i = 0; i < 2000 && capture.GetCapture().GetHop() == 128; ++i) {
        Sleep(1);
    }
    capture.GetCapture().SetAdaptHop(false);
    ASSERT_EQ(capture.GetCapture().GetHop(), 127);
    std::mt19937 random(32);
    ASSERT_NO_FATAL_FAILURE(FeedAndCompare(capture, CFlatModel(1024, 1024, static_cast<float>(128.0 * 0.995)),
                                           60000, 1024, random));
    // By hand: the tenth block begins at 9 x 127.36 = 1146.24, that is at sample 1146.
    EXPECT_EQ(capture.GetStore().GetBlocks()[9][0], static_cast<float>(SampleAt(1146)));
    EXPECT_EQ(capture.GetStore().GetBlocks()[9][1023], static_cast<float>(SampleAt(2169)));
}

// As fast as buffers come back, blocks may be late and left out, but each that is delivered is a true piece
// of the recording, and they go forward by whole hops.
TEST(BlockSequence, AtFullSpeedEveryBlockIsTrue) {
    constexpr int nHop = 100;
    const CFakeWaveInScope fake;
    CBlockStore store;
    CCaptureThread capture;
    capture.SetBufferSamples(256);
    capture.SetHop(nHop);
    store.Attach(capture, 512);
    ASSERT_TRUE(capture.Start());
    // A sawtooth whose value tells the place, within a length that no two blocks are apart.
    fake->Play([](std::uint64_t n) { return static_cast<std::int16_t>(n % 32000); },
               {.nChunk = 97, .interval = {}});
    ASSERT_TRUE(store.WaitForCount(300, 30000));
    fake->StopPlaying();
    capture.Stop();
    int nBefore = -nHop;
    for (const auto& block : store.GetBlocks()) {
        const int nFirst = static_cast<int>(block[0]);
        ASSERT_EQ((nFirst - nBefore + 32000) % 32000 % nHop, 0);
        for (int i = 1; i < 512; ++i) {
            ASSERT_EQ(static_cast<int>(block[static_cast<std::size_t>(i)]), (nFirst + i) % 32000);
        }
        nBefore = nFirst;
    }
}

}  // namespace
