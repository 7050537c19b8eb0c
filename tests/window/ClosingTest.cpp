#include "platform/base/String.h"
#include "platform/windows/support/Toolkit.h"
#include "window/TunerWndTest.h"

#include <chrono>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <thread>

namespace {

using std::chrono::steady_clock;

class ClosingTest : public CTunerWndTest {
protected:
    // Frames as fast as the machine makes them.
    void PlayWithoutPause() {
        m_fake->Play([](std::uint64_t n) { return static_cast<std::int16_t>((n * 7919) % 9000); },
                     {128, std::chrono::microseconds(0)});
    }
};

// While frames draw, again and again: nothing is drawn after it, and it takes no longer than it may.
TEST_F(ClosingTest, EndsFramesAndWindowWhicheverWay) {
    const std::pair<const char*, std::function<void()>> ways[] = {
        {"close box", [this] { toolkit::CloseBox(Wnd()); }},
        {"exit button", [this] { Click(ID_EXIT); }},
        {"exit key", [this] { toolkit::Key(Access().List(), 'E', "e"); }},
        {"destroyed", [this] { Wnd().DestroyWindow(); }},
        {"twice at once", [this] {
             Wnd().SendMessage(WM_CLOSE);
             Wnd().SendMessage(WM_CLOSE);
             Wnd().SendMessage(WM_COMMAND, MakeCommandParam(ID_EXIT, BN_CLICKED));
             Wnd().DestroyWindow();
         }}};
    WriteState(1, 0);
    PlayWithoutPause();
    for (int nRound = 0; nRound < 25; ++nRound) {
        const auto& [szWay, fnClose] = ways[nRound % 5];
        SCOPED_TRACE(szWay);
        Open();
        toolkit::RunFor(4 * nRound);
        const auto start = steady_clock::now();
        fnClose();
        EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(2));
        EXPECT_FALSE(Wnd().IsWindow());
        EXPECT_EQ(m_fake->GetOpenCount(), 0);
        const auto picture = CopyPicture();
        Wnd().OnFrame();
        toolkit::RunFor(30);
        EXPECT_EQ(CopyPicture(), picture);
        EXPECT_THAT(SavedSettings(), testing::EndsWith(FormatText("\t1\t%d\t0", Access().Engine().GetHop())));
        m_pWnd.reset();
        toolkit::RunPending();
        EXPECT_EQ(toolkit::CountTopLevelWidgets(), 0);
    }
}

// A frame that cannot end, here for want of the picture: the process saves what there is and goes, for
// nothing that the frame stands on may be taken away.
TEST_F(ClosingTest, EndsTheProcessWhereAFrameCannotEnd) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    WriteState(1, 0, "1");
    const auto closeUnderALock = [this] {
        PlayWithoutPause();
        Open();
        // The wait for the frame grows with the hop, and the hop with sound that comes faster than frames.
        Access().Engine().SetAdaptHop(false);
        toolkit::RunFor(100);
        const std::scoped_lock lock(Wnd().GetPictureLock());
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        Wnd().SendMessage(WM_CLOSE);
    };
    // What the process leaves behind goes with this test's directory.
    setenv("TMPDIR", m_directory.Path().c_str(), 1);
    EXPECT_EXIT(closeUnderALock(), testing::ExitedWithCode(0), "");
    unsetenv("TMPDIR");
}

}  // namespace
