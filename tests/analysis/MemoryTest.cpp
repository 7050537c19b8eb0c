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
#include <limits>
#include <new>
#include <vector>

namespace {

std::atomic<long> g_nAllocations = 0;
// How many more are granted.
std::atomic<long> g_nGranted = std::numeric_limits<long>::max();

void* Take(std::size_t nBytes, std::size_t nAlignment) noexcept {
    ++g_nAllocations;
    if (g_nGranted-- <= 0) {
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

bool SetUpWith(CSpectrumAnalyzer& analyzer, long nGranted) {
    g_nGranted = nGranted;
    const bool bReady = analyzer.Setup(1024, 11025, 20, 7, 24, 50.0F);
    g_nGranted = std::numeric_limits<long>::max();
    return bReady;
}

// Each allocation of a set-up refused in turn: a false result, nothing lost, and the next set-up works.
TEST(AnalysisMemory, ASetupWithoutMemoryIsRefused) {
    const std::vector<float> sound = SyntheticString{}.MakeFloats(1024);
    CSpectrumAnalyzer analyzer;
    nspsPrepareRealFft(10);
    const long nBefore = g_nAllocations;
    ASSERT_TRUE(analyzer.Setup(1024, 11025, 20, 7, 24, 50.0F));
    const long nNeeded = g_nAllocations - nBefore;
    ASSERT_GT(nNeeded, 10);
    int nRefused = 0;
    for (long nGranted = 0; nGranted < nNeeded; ++nGranted) {
        nRefused += SetUpWith(analyzer, nGranted) ? 0 : 1;
    }
    EXPECT_EQ(nRefused, nNeeded);
    ASSERT_TRUE(SetUpWith(analyzer, nNeeded));
    std::copy(sound.begin(), sound.end(), analyzer.GetInputBuffer());
    analyzer.Analyze(false, 128);
    EXPECT_TRUE(analyzer.GetCandidates()[9].IsNote(9, 2));
}

TEST(AnalysisMemory, AReferenceWithoutMemoryKeepsTheOldOne) {
    CSpectrumAnalyzer analyzer;
    ASSERT_TRUE(analyzer.Setup(1024, 11025, 20, 7, 24, 50.0F));
    for (long nGranted = 0; nGranted < 4; ++nGranted) {
        g_nGranted = nGranted;
        EXPECT_FALSE(analyzer.SetReference(450.0F)) << nGranted;
        g_nGranted = std::numeric_limits<long>::max();
        EXPECT_EQ(analyzer.MakeReading(440.0F, 1.0F).cents, 0.0F);
    }
    EXPECT_TRUE(analyzer.SetReference(450.0F));
    EXPECT_EQ(analyzer.MakeReading(450.0F, 1.0F).cents, 0.0F);
}

}  // namespace
