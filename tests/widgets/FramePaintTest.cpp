// Frames are drawn on one thread while another paints, changes tuning, colours and A frequency, on the same
// widgets: what stands at the end must be right to the pixel.

#include "platform/drawing/GraphicsSession.h"
#include "platform/windows/ClientDc.h"
#include "widgets/PictureDirectory.h"
#include "widgets/RandomState.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

namespace {

using namespace std::chrono_literals;

constexpr auto ROUND = 400ms;
constexpr int ROUNDS = 8;

class FramePaint : public testing::Test {
protected:
    // For one widget's draw, or for one setter that draws, at a time.
    template <class Step>
    void Locked(Step step) {
        const std::lock_guard lock(m_wnd.GetPictureLock());
        CClientDC dc(&m_wnd);
        step(&dc);
    }

    // The frames, on their own thread, in the order of the frame step.
    void RunFrames(unsigned nSeed) {
        CRandomState random(nSeed);
        while (!m_bStop) {
            DrawFrame(random.ChangeReading(m_reading));
            ++m_nFrames;
        }
        // The colour may have been set by the other thread since.
        DrawFrame(true);
    }

    void DrawFrame(bool bColorChanged) {
        m_widgets.SetReading(m_reading);
        Locked([this](CDC* pDc) { m_widgets.m_meter.Draw(pDc, false); });
        Locked([this](CDC* pDc) { m_widgets.m_coarse.Draw(pDc, false); });
        if (bColorChanged) {
            m_widgets.m_dial.SetColor(m_reading.clrDialNeedle);
        }
        Locked([&](CDC* pDc) { m_widgets.m_dial.Draw(pDc, false, bColorChanged); });
    }

    void Paint() {
        Locked([this](CDC* pDc) { m_widgets.m_diagram.Draw(pDc, true); });
        Locked([this](CDC* pDc) { m_widgets.m_meter.Draw(pDc, true); });
        Locked([this](CDC* pDc) { m_widgets.m_coarse.Draw(pDc, true); });
        Locked([this](CDC* pDc) { m_widgets.m_dial.Draw(pDc, true, false); });
    }
    // What the other thread does: paints, or changes something, which a paint follows.
    void Disturb(CRandomState& random) {
        switch (random.Number(0, 2)) {
            case 0:
                random.ChangeTuning(m_settings);
                Locked([this](CDC* /*pDc*/) { m_widgets.SetTuning(m_settings); });
                break;
            case 1:
                random.ChangeColors(m_settings);
                m_widgets.m_dial.SetColor(m_settings.clrNeedle);
                Locked([this](CDC* /*pDc*/) { m_widgets.SetColors(m_settings); });
                break;
            default:
                break;
        }
        Paint();
    }

    CGraphicsSession m_session;
    CDataDirectory m_directory;
    CStageWnd m_wnd;
    CWidgetSet m_widgets;
    // What the frames were given last: level, pitch, colour of the needle; and what the other thread set.
    DisplayState m_reading;
    DisplayState m_settings;
    std::atomic<bool> m_bStop = false;
    std::atomic<int> m_nFrames = 0;
};

TEST_F(FramePaint, LeavesEveryPixelRight) {
    ASSERT_TRUE(m_widgets.Create(&m_wnd));
    m_widgets.SetAll(m_settings);
    Paint();
    CRandomState random(7);
    int nChanges = 0;
    for (int nRound = 0; nRound < ROUNDS; ++nRound) {
        m_bStop = false;
        std::thread frames([&] { RunFrames(static_cast<unsigned>(nRound)); });
        const auto end = std::chrono::steady_clock::now() + ROUND;
        while (std::chrono::steady_clock::now() < end) {
            Disturb(random);
            ++nChanges;
            std::this_thread::yield();
        }
        m_bStop = true;
        frames.join();

        DisplayState state = m_reading;
        state.tuning = m_settings.tuning;
        state.fA = m_settings.fA;
        state.clrNeedle = m_settings.clrNeedle;
        state.clrHigh = m_settings.clrHigh;
        state.clrLow = m_settings.clrLow;
        state.clrText = m_settings.clrText;
        CStageWnd wndFresh;
        CWidgetSet fresh;
        ASSERT_TRUE(fresh.Create(&wndFresh));
        fresh.SetAll(state);
        wndFresh.Draw([&](CDC* pDc) { fresh.DrawFull(pDc); });
        ASSERT_TRUE(ShowTheSame(m_wnd, wndFresh, CStageWnd::s_rcClient)) << "round " << nRound;
    }
    EXPECT_GT(m_nFrames, ROUNDS);
    EXPECT_GT(nChanges, ROUNDS);
}

}  // namespace
