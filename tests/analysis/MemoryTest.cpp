// What the analysis does when there is no memory. This program replaces the global allocation functions to
// count and to refuse.

#include "analysis/SpectrumAnalyzer.h"
#include "platform/signal/RealFft.h"
#include "stage/SyntheticString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <vector>

namespace {

std::atomic<long> g_nAllocations = 0;
// The one, by number, that is refused.
std::atomic<long> g_nRefused = -1;

void* Take(std::size_t nBytes, std::size_t nAlignment) noexcept {
    if (g_nAllocations++ == g_nRefused) {
        return nullptr;
    }
    const std::size_t nRounded =
        std::max<std::size_t>((nBytes + nAlignment - 1) / nAlignment, 1) * nAlignment;
    return std::aligned_alloc(nAlignment, nRounded);
}

constexpr std::size_t USUAL = alignof(std::max_align_t);

}  // namespace

void* operator new(std::size_t nBytes) {
    void* pRoom = Take(nBytes, USUAL);
    if (pRoom == nullptr) {
        throw std::bad_alloc();
    }
    return pRoom;
}
void* operator new(std::size_t nBytes, const std::nothrow_t& /*tag*/) noexcept {
    return Take(nBytes, USUAL);
}
void* operator new(std::size_t nBytes, std::align_val_t alignment, const std::nothrow_t& /*tag*/) noexcept {
    return Take(nBytes, static_cast<std::size_t>(alignment));
}
void operator delete(void* pRoom) noexcept {
    std::free(pRoom);
}
void operator delete(void* pRoom, std::size_t /*nBytes*/) noexcept {
    std::free(pRoom);
}
void operator delete(void* pRoom, std::align_val_t /*alignment*/) noexcept {
    std::free(pRoom);
}

namespace {

// Each allocation of a set-up refused in turn: a false result, nothing lost, and the next set-up works.
TEST(AnalysisMemory, ASetupWithoutMemoryIsRefused) {
    const std::vector<float> sound = SyntheticString{}.MakeFloats(1024);
    CSpectrumAnalyzer analyzer;
    nspsPrepareRealFft(10);
    const long nBefore = g_nAllocations;
    ASSERT_TRUE(analyzer.Setup(1024, 11025, 20, 7, 24, 50.0F));
    const long nNeeded = g_nAllocations - nBefore;
    ASSERT_GT(nNeeded, 10);
    for (long i = 0; i < nNeeded; ++i) {
        g_nRefused = g_nAllocations + i;
        EXPECT_FALSE(analyzer.Setup(1024, 11025, 20, 7, 24, 50.0F)) << i;
    }
    ASSERT_TRUE(analyzer.Setup(1024, 11025, 20, 7, 24, 50.0F));
    std::copy(sound.begin(), sound.end(), analyzer.GetInputBuffer());
    analyzer.Analyze(false, 128);
    EXPECT_TRUE(analyzer.GetCandidates()[9].IsNote(9, 2));
}

TEST(AnalysisMemory, AReferenceWithoutMemoryKeepsTheOldOne) {
    CSpectrumAnalyzer analyzer;
    ASSERT_TRUE(analyzer.Setup(1024, 11025, 20, 7, 24, 50.0F));
    for (long i = 0; i < 4; ++i) {
        g_nRefused = g_nAllocations + i;
        EXPECT_FALSE(analyzer.SetReference(450.0F)) << i;
        EXPECT_EQ(analyzer.MakeReading(440.0F, 1.0F).cents, 0.0F);
    }
    EXPECT_TRUE(analyzer.SetReference(450.0F));
    EXPECT_EQ(analyzer.MakeReading(450.0F, 1.0F).cents, 0.0F);
}

}  // namespace
