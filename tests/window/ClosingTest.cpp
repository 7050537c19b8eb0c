#include "platform/windows/support/Toolkit.h"
#include "window/ControlTable.h"
#include "window/TunerApp.h"
#include "window/TunerWndTest.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <thread>

namespace {

using std::chrono::steady_clock;
using testing::Contains;

class ClosingTest : public CTunerWndTest {
protected:
    // Frames as fast as the machine makes them.
    void PlayWithoutPause() {
        m_fake->Play([](std::uint64_t n) { return static_cast<std::int16_t>((n * 7919) % 9000); },
                     {128, std::chrono::microseconds(0)});
    }
    // The real application, with something that the user does once its window stands.
    int RunApplication(const std::function<void(CTunerWnd&)>& fnDo) {
        CTunerApp app;
        toolkit::Later([&app, &fnDo] { fnDo(dynamic_cast<CTunerWnd&>(*app.GetMainWnd())); });
        return app.Main();
    }
};

struct WayOut {
    const char* szName;
    void (*pfnGo)(CTunerWnd& wnd);

    friend void PrintTo(const WayOut& way, std::ostream* pStream) { *pStream << way.szName; }
};
class WayOutTest : public ClosingTest, public testing::WithParamInterface<WayOut> {};

// While frames draw, again and again: nothing is drawn after it, and it takes no longer than it may.
TEST_P(WayOutTest, EndsFramesAndWindow) {
    WriteState(1, 0);
    PlayWithoutPause();
    for (int nRound = 0; nRound < 5; ++nRound) {
        Open();
        toolkit::RunFor(20 * nRound);
        const auto start = steady_clock::now();
        GetParam().pfnGo(Wnd());
        EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(2));
        EXPECT_FALSE(Wnd().IsWindow());
        EXPECT_EQ(m_fake->GetOpenCount(), 0);
        const auto picture = CopyPicture();
        Wnd().OnFrame();
        toolkit::RunFor(30);
        EXPECT_EQ(CopyPicture(), picture);
        EXPECT_EQ(StateField(7), "1");
        EXPECT_EQ(StateField(8), std::to_string(Access().Engine().GetHop()));
        m_pWnd.reset();
        toolkit::RunPending();
        EXPECT_EQ(toolkit::CountTopLevelWidgets(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Ways, WayOutTest,
    testing::Values(WayOut{"CloseBox", [](CTunerWnd& wnd) { toolkit::CloseBox(wnd); }},
                    WayOut{"Exit",
                           [](CTunerWnd& wnd) {
                               toolkit::Click(*wnd.GetDlgItem(ID_EXIT), {10, 10});
                           }},
                    WayOut{"ExitByKey",
                           [](CTunerWnd& wnd) { toolkit::Key(*wnd.GetDlgItem(ID_TUNINGS), 'E', "e"); }},
                    WayOut{"Destroyed", [](CTunerWnd& wnd) { wnd.DestroyWindow(); }},
                    WayOut{"TwiceAtOnce",
                           [](CTunerWnd& wnd) {
                               wnd.SendMessage(WM_CLOSE);
                               wnd.SendMessage(WM_CLOSE);
                               wnd.SendMessage(WM_COMMAND, MakeCommandParam(ID_EXIT, BN_CLICKED));
                               wnd.DestroyWindow();
                           }}),
    [](const auto& way) { return way.param.szName; });

// A device that is open and delivers nothing, and then one that is gone.
TEST_F(ClosingTest, DoesNotWaitForTheDevice) {
    for (const bool bGone : {false, true}) {
        m_fake->Stall(!bGone);
        Open();
        m_fake->SetPresent(0, !bGone);
        toolkit::RunFor(200);
        const auto start = steady_clock::now();
        Close();
        EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(2));
        EXPECT_EQ(m_fake->GetOpenCount(), 0);
    }
}

// An object that dies with its window open takes the capture with it.
TEST_F(ClosingTest, EndsTheCaptureWithTheObject) {
    PlayWithoutPause();
    Open();
    toolkit::RunFor(50);
    m_pWnd.reset();
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
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

TEST_F(ClosingTest, ObeysATerminationWhateverIsOpen) {
    m_user.LookAway();
    PlayWithoutPause();
    EXPECT_EQ(RunApplication([](CTunerWnd& wnd) {
                  toolkit::Later([] {
                      EXPECT_NE(toolkit::ModalTitle(), "");
                      EXPECT_EQ(raise(SIGTERM), 0);
                  });
                  wnd.SendMessage(WM_COMMAND, MakeCommandParam(ID_ADD, BN_CLICKED));
              }),
              0);
    EXPECT_EQ(StateField(9), "0") << "no tuning was added";
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
    // The box that tells of a failure, while the window comes up.
    m_fake->SetDevices({});
    toolkit::Later([] { EXPECT_EQ(raise(SIGTERM), 0); });
    CTunerApp app;
    EXPECT_EQ(app.Main(), 0);
    EXPECT_THAT(m_directory.LogMessages(), Contains("Unable to find any recording device"));
}

}  // namespace
