// What a frame takes from the heap: nothing, whether the reading stands or the needle changes its colour.

#include "platform/windows/support/Toolkit.h"
#include "window/TunerWndTest.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local int g_nAllocations = 0;

void* CountAndAllocate(std::size_t nBytes) noexcept {
    ++g_nAllocations;
    return std::malloc(nBytes);
}

void* CountAndAllocateOrThrow(std::size_t nBytes) {
    if (void* const p = CountAndAllocate(nBytes)) {
        return p;
    }
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t nBytes) {
    return CountAndAllocateOrThrow(nBytes);
}
void* operator new[](std::size_t nBytes) {
    return CountAndAllocateOrThrow(nBytes);
}
void* operator new(std::size_t nBytes, const std::nothrow_t& /*tag*/) noexcept {
    return CountAndAllocate(nBytes);
}
void* operator new[](std::size_t nBytes, const std::nothrow_t& /*tag*/) noexcept {
    return CountAndAllocate(nBytes);
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete[](void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t /*nBytes*/) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t /*nBytes*/) noexcept {
    std::free(p);
}

namespace {

class FrameHeapTest : public CTunerWndTest {
protected:
    int CountInFrames(int nFrames) {
        const int nBefore = g_nAllocations;
        for (int i = 0; i < nFrames; ++i) {
            Wnd().OnFrame();
        }
        return g_nAllocations - nBefore;
    }
};

TEST_F(FrameHeapTest, SeesWhatIsTaken) {
    Open();
    Access().StopCapture();
    const int nBefore = g_nAllocations;
    Wnd().SendMessage(WM_COMMAND, MakeCommandParam(10008, 1));
    EXPECT_GT(g_nAllocations, nBefore);
}

TEST_F(FrameHeapTest, FindsThatAFrameTakesNothing) {
    WriteState(0, 0);
    Open();
    // The dial's needle, in its column or near it, is no longer grey: a note sounds.
    PlayString(110.2);
    ASSERT_TRUE(toolkit::WaitUntil([this] { return PixelAt(370, 203) == 0xA00000U; }));
    Access().StopCapture();
    EXPECT_EQ(CountInFrames(200), 0) << "a reading that stands";

    // The needle is drawn anew in each frame.
    for (COLORREF clr = 1; clr < 50; ++clr) {
        Access().Store().SetNeedleColor(clr);
        ASSERT_EQ(CountInFrames(1), 0) << "needle colour " << clr;
    }
}

}  // namespace
