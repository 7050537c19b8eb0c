// The capture thread's way from one block to the next in the real window: the device, the block, the frame.

#include "platform/windows/support/Toolkit.h"
#include "real_time/QuietThread.h"
#include "window/TunerWndTest.h"

#include <array>
#include <atomic>
#include <cmath>

namespace {

// What the thread may lock, all of it held for a few instructions, one copy or one widget's draw: the event
// of a filled buffer, the queue of buffers, the picture.
constexpr std::array ALLOWED{"CEvent::",      "CWaveInQueue::",      "waveIn",
                             "CFakeWaveIn::", "CTunerWnd::DrawDial", "CTunerWnd::DrawLiveWidgets"};
constexpr int WARM_UP_BLOCKS = 50;

struct Watch {
    CTunerWnd* pWnd = nullptr;
    std::atomic<int> nBlocks = 0;
    std::atomic<bool> bEnds = false;
};

// From the end of the first blocks on everything is watched, the wait for sound and the analysis too.
void FrameUnderWatch(void* pArg) {
    Watch& watch = *static_cast<Watch*>(pArg);
    CTunerWnd::FrameCallback(watch.pWnd);
    const int nBlocks = ++watch.nBlocks;
    if (watch.bEnds) {
        quiet::EndWatching();
    } else if (nBlocks == WARM_UP_BLOCKS) {
        quiet::BeginWatching();
    }
}

class CaptureWayTest : public CTunerWndTest {};

// A tone that sweeps over the strings, falls silent and comes back, so that every reading, needle and colour
// of the fade is drawn on the way.
TEST_F(CaptureWayTest, TakesNoMemoryWaitsForNobodyAndWritesNothing) {
    WriteState(0, 0);
    Open();
    Access().StopCapture();
    Watch watch{.pWnd = &Wnd()};
    CPitchEngine& engine = Access().Engine();
    ASSERT_TRUE(engine.Start(&FrameUnderWatch, &watch, 0, 11025, 1024, 1024, 50.0F));
    m_fake->Play(
        [fPhase = 0.0](std::uint64_t n) mutable {
            const double dTime = static_cast<double>(n) / 11025.0;
            fPhase += 2.0 * M_PI * 140.0 * std::exp2(std::sin(dTime)) / 11025.0;
            const double dTone =
                std::sin(fPhase) + 0.6 * std::sin(2.0 * fPhase) + 0.4 * std::sin(3.0 * fPhase);
            return static_cast<std::int16_t>(std::fmod(dTime, 6.0) > 4.0 ? 0.0 : 9000.0 * dTone);
        },
        {.nChunk = 128, .interval = std::chrono::microseconds(500)});
    EXPECT_TRUE(toolkit::WaitUntil([&] { return watch.nBlocks > 5000; }));
    watch.bEnds = true;
    const int nBlocks = watch.nBlocks;
    EXPECT_TRUE(toolkit::WaitUntil([&] { return watch.nBlocks > nBlocks + 1; }));
    engine.Stop();
    EXPECT_EQ(quiet::Describe(ALLOWED), "");
}

}  // namespace
