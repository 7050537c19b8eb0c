// Frames are drawn on one thread while another paints, changes tuning, colours and A frequency, on the same
// widgets: what stands at the end must be right to the pixel.

#include "platform/drawing/GraphicsSession.h"
#include "platform/windows/ClientDc.h"
#include "widgets/PictureDirectory.h"
#include "widgets/WidgetSet.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <random>
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
        std::mt19937 random(nSeed);
        const auto number = [&random](int nLow, int nHigh) {
            return std::uniform_int_distribution(nLow, nHigh)(random);
        };
        while (!m_bStop) {
            m_reading.fLevel = static_cast<float>(number(0, 100)) / 100.0F;
            if (number(0, 2) > 0) {
                m_reading.fHz = static_cast<float>(number(30, 800));
                m_reading.nCents = number(-51, 51);
                m_reading.nSemitone = number(0, SEMITONES - 1);
            }
            const bool bColorChanged = number(0, 3) == 0;
            if (bColorChanged) {
                m_reading.clrDialNeedle = static_cast<COLORREF>(number(0, 0xFFFFFF));
            }
            DrawFrame(bColorChanged);
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
    void ChangeTuning(const std::function<int(int, int)>& number) {
        for (StringNote& note : m_settings.tuning.m_strings) {
            note.Set(number(0, SEMITONES - 1), number(0, 2));
        }
        m_widgets.m_diagram.SetTuning(m_settings.tuning);
        Locked([this](CDC* /*pDc*/) { m_widgets.m_coarse.SetTuning(m_settings.tuning); });
        Locked([this](CDC* pDc) { m_widgets.m_diagram.Draw(pDc, true); });
        Locked([this](CDC* pDc) { m_widgets.m_coarse.Draw(pDc, true); });
    }
    void ChangeAFrequency(const std::function<int(int, int)>& number) {
        m_settings.fA = static_cast<float>(number(4300, 4500)) / 10.0F;
        Locked([this](CDC* /*pDc*/) { m_widgets.m_coarse.SetAFrequency(m_settings.fA); });
        Locked([this](CDC* pDc) { m_widgets.m_coarse.Draw(pDc, true); });
    }
    void ChangeColors(const std::function<int(int, int)>& number) {
        m_settings.clrHigh = static_cast<COLORREF>(number(0, 0xFFFFFF));
        m_settings.clrLow = static_cast<COLORREF>(number(0, 0xFFFFFF));
        m_settings.clrText = static_cast<COLORREF>(number(0, 0xFFFFFF));
        m_settings.clrNeedle = static_cast<COLORREF>(number(0, 0xFFFFFF));
        Locked([this](CDC* /*pDc*/) { m_widgets.m_meter.SetColors(m_settings.clrHigh, m_settings.clrLow); });
        m_widgets.m_dial.SetColor(m_settings.clrNeedle);
        Locked([this](CDC* /*pDc*/) { m_widgets.m_dial.SetDigitColor(m_settings.clrText); });
        Locked([this](CDC* /*pDc*/) {
            m_widgets.m_coarse.SetColor(m_settings.clrNeedle);
            m_widgets.m_coarse.Rebuild();
        });
        Locked([this](CDC* pDc) { m_widgets.m_meter.Draw(pDc, true); });
        Locked([this](CDC* pDc) { m_widgets.m_dial.Draw(pDc, true, false); });
        Locked([this](CDC* pDc) { m_widgets.m_coarse.Draw(pDc, true); });
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
    std::mt19937 random(7);
    const auto number = [&random](int nLow, int nHigh) {
        return std::uniform_int_distribution(nLow, nHigh)(random);
    };
    int nChanges = 0;
    for (int nRound = 0; nRound < ROUNDS; ++nRound) {
        m_bStop = false;
        std::thread frames([&] { RunFrames(static_cast<unsigned>(nRound)); });
        const auto end = std::chrono::steady_clock::now() + ROUND;
        while (std::chrono::steady_clock::now() < end) {
            switch (number(0, 3)) {
                case 0:
                    Paint();
                    break;
                case 1:
                    ChangeTuning(number);
                    break;
                case 2:
                    ChangeAFrequency(number);
                    break;
                default:
                    ChangeColors(number);
                    break;
            }
            ++nChanges;
            std::this_thread::yield();
        }
        m_bStop = true;
        frames.join();

        DisplayState state = m_settings;
        state.fLevel = m_reading.fLevel;
        state.fHz = m_reading.fHz;
        state.nCents = m_reading.nCents;
        state.nSemitone = m_reading.nSemitone;
        state.clrDialNeedle = m_reading.clrDialNeedle;
        CStageWnd wndFresh;
        CWidgetSet fresh;
        ASSERT_TRUE(fresh.Create(&wndFresh));
        fresh.SetAll(state);
        wndFresh.Draw([&](CDC* pDc) { fresh.DrawFull(pDc); });
        ASSERT_TRUE(ShowTheSame(m_wnd, wndFresh, CStageWnd::s_rcClient)) << "round " << nRound;
    }
    EXPECT_GT(m_nFrames, ROUNDS);
    EXPECT_GT(nChanges, ROUNDS);
    RecordProperty("frames", m_nFrames);
    RecordProperty("changes", nChanges);
}

}  // namespace
