#include "capture/CaptureTest.h"

#include <algorithm>
#include <cmath>
#include <random>

// Whatever the rhythm in which sound arrives, the blocks are those that a flat recording would give.

namespace {

class BlockSequence : public CCaptureTest {
protected:
    // Feeds in pieces of any size and no more than one buffer, for with two, blocks between them would be
    // late. Always waits for the blocks that are due: those that end before the last buffer that is complete.
    void FeedAndCompare(int nBuffer, int nBlock, double dHop, std::size_t nTotal, std::mt19937& random) {
        std::size_t nDue = 0;
        while (m_nFed < nTotal) {
            Feed(std::uniform_int_distribution<std::size_t>(1, static_cast<std::size_t>(nBuffer))(random));
            const int nComplete = static_cast<int>(m_nFed) / nBuffer * nBuffer;
            nDue = static_cast<std::size_t>(std::ceil(std::max(nComplete - nBlock, 0) / dHop));
            ASSERT_TRUE(WaitForCount(nDue));
        }
        Sleep(5);  // a block too many would come now
        const auto blocks = GetBlocks();
        ASSERT_EQ(blocks.size(), nDue);
        for (std::size_t i = 0; i < nDue; ++i) {
            const auto nStart = static_cast<std::size_t>(static_cast<double>(i) * dHop);
            Block expected;
            for (std::size_t n = nStart; n < nStart + static_cast<std::size_t>(nBlock); ++n) {
                expected.push_back(static_cast<std::int16_t>(n));
            }
            ASSERT_EQ(blocks[i], expected) << "block " << i << " from sample " << nStart;
        }
    }
};

TEST_F(BlockSequence, AnyRhythmGivesTheBlocksOfAFlatRecording) {
    std::mt19937 random(31);
    const auto pick = [&](int nLow, int nHigh) { return std::uniform_int_distribution(nLow, nHigh)(random); };
    for (int nRound = 0; nRound < 60; ++nRound) {
        const int nBuffer = pick(1, 300);
        const int nBlock = pick(1, std::min(700, 20 * nBuffer));
        const int nHop = pick(1, 3 * nBuffer);
        SCOPED_TRACE(testing::Message() << "round " << nRound << ": buffer " << nBuffer << ", block "
                                        << nBlock << ", hop " << nHop);
        Attach(nBlock);
        m_pCapture->SetBufferSamples(nBuffer);
        m_pCapture->SetHop(nHop);
        ASSERT_TRUE(Open());
        ASSERT_NO_FATAL_FAILURE(
            FeedAndCompare(nBuffer, nBlock, nHop, static_cast<std::size_t>(nBuffer) * 100, random));
    }
}

// The regulator shortens the hop at each turn that waits, by half a percent. Two turns before the first block
// make 126.7232: blocks then begin between samples.
TEST_F(BlockSequence, AFractionalHopKeepsItsFraction) {
    m_pCapture->SetAdaptHop(true);
    ASSERT_TRUE(Open());
    EXPECT_TRUE(WaitUntil([&] { return m_pCapture->GetHop() == 127; }));
    FeedBuffers(1);
    EXPECT_TRUE(WaitUntil([&] { return m_pCapture->GetHop() == 126; }));
    m_pCapture->SetAdaptHop(false);
    std::mt19937 random(32);
    ASSERT_NO_FATAL_FAILURE(FeedAndCompare(1024, 1024, 128.0 * 0.995 * 0.995, 8192, random));
}

// As fast as buffers come back, blocks may be late and left out, but each that is delivered is a true piece
// of the recording, and they go forward by whole hops.
TEST_F(BlockSequence, AtFullSpeedEveryBlockIsTrue) {
    constexpr int nHop = 100;
    Attach(512);
    m_pCapture->SetBufferSamples(256);
    m_pCapture->SetHop(nHop);
    ASSERT_TRUE(Open());
    // A sawtooth whose value tells the place, within a length that no two blocks are apart.
    m_fake->Play([](std::uint64_t n) { return static_cast<std::int16_t>(n % 32000); },
                 {.nChunk = 97, .interval = {}});
    ASSERT_TRUE(WaitForCount(300, 30000));
    m_fake->StopPlaying();
    m_pCapture->Stop();
    int nBefore = -nHop;
    for (const auto& block : GetBlocks()) {
        const int nFirst = static_cast<int>(block[0]);
        ASSERT_EQ((nFirst - nBefore + 32000) % 32000 % nHop, 0);
        for (int i = 1; i < 512; ++i) {
            ASSERT_EQ(static_cast<int>(block[static_cast<std::size_t>(i)]), (nFirst + i) % 32000);
        }
        nBefore = nFirst;
    }
}

}  // namespace
