// Frames draw only what changed. Whatever came before, what stands on the screen after one must be what a
// full draw shows.

#include "platform/drawing/GraphicsSession.h"
#include "platform/windows/ClientDc.h"
#include "widgets/PictureDirectory.h"
#include "widgets/RandomState.h"
#include "widgets/TestArtwork.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

namespace {

// Draws in frames, and keeps a second set that always draws in full beside it.
class CLiveDisplay {
public:
    CLiveDisplay() {
        EXPECT_TRUE(m_live.Create(&m_wndLive));
        EXPECT_TRUE(m_full.Create(&m_wndFull));
        m_live.SetAll(m_state);
        m_full.SetAll(m_state);
        DrawLiveInFull();
    }

    void DrawLiveInFull() {
        m_wndLive.Draw([this](CDC* pDc) { m_live.DrawFull(pDc); });
    }
    void Frame(bool bColorChanged = false) {
        m_wndLive.Draw([&](CDC* pDc) {
            m_live.SetReading(m_state);
            if (bColorChanged) {
                m_live.m_dial.SetColor(m_state.clrDialNeedle);
            }
            m_live.m_meter.Draw(pDc, false);
            m_live.m_coarse.Draw(pDc, false);
            m_live.m_dial.Draw(pDc, false, bColorChanged);
        });
    }
    testing::AssertionResult ShowsItsState() {
        m_full.SetReading(m_state);
        m_full.m_dial.SetColor(m_state.clrDialNeedle);
        m_wndFull.Draw([this](CDC* pDc) { m_full.DrawFull(pDc); });
        return ShowTheSame(m_wndLive, m_wndFull, CStageWnd::s_rcClient);
    }
    // One more frame of the dial alone, and what it shows.
    testing::AssertionResult DialShows(int nSemitone, int nCents) {
        for (CFineDial* const pDial : {&m_live.m_dial, &m_full.m_dial}) {
            pDial->SetNote(nSemitone);
            pDial->SetCents(nCents);
        }
        m_wndLive.Draw([this](CDC* pDc) { m_live.m_dial.Draw(pDc, false, false); });
        m_wndFull.Draw([this](CDC* pDc) { m_full.m_dial.Draw(pDc, true, false); });
        return ShowTheSame(m_wndLive, m_wndFull, CWidgetSet::s_rcDial);
    }
    void ChangeColorsAndTuning() {
        for (CWidgetSet* const pSet : {&m_live, &m_full}) {
            pSet->SetColors(m_state);
            pSet->SetTuning(m_state);
        }
        DrawLiveInFull();
    }

    DisplayState m_state;

private:
    CStageWnd m_wndLive;
    CWidgetSet m_live;
    CStageWnd m_wndFull;
    CWidgetSet m_full;
};

void ExpectEveryStepOfTheDialToBeWhole() {
    CLiveDisplay display;
    for (int nFrom = 0; nFrom < SEMITONES; ++nFrom) {
        for (int nTo = 0; nTo < SEMITONES; ++nTo) {
            ASSERT_TRUE(display.DialShows(nFrom, 0));
            ASSERT_TRUE(display.DialShows(nTo, 0)) << nFrom << " to " << nTo;
        }
    }
    // From any reading to one of each sign and number of digits, to digits of each width; and from there to
    // the next.
    for (const int nTo : {-51, -34, -10, -9, 0, 9, 12, 50}) {
        for (int nFrom = -55; nFrom <= 55; ++nFrom) {
            ASSERT_TRUE(display.DialShows(0, nFrom)) << nTo << " to " << nFrom << " cents";
            ASSERT_TRUE(display.DialShows(0, nTo)) << nFrom << " to " << nTo << " cents";
        }
    }
}

void ExpectRandomRunsToBeWhole() {
    CRandomState random(20);
    CLiveDisplay display;
    for (int i = 0; i < 800; ++i) {
        const bool bColorChanged = random.ChangeReading(display.m_state);
        if (random.Number(0, 20) == 0) {
            random.ChangeColors(display.m_state);
            random.ChangeTuning(display.m_state);
            display.ChangeColorsAndTuning();
        }
        if (random.Number(0, 9) == 0) {
            display.DrawLiveInFull();
        }
        display.Frame(bColorChanged);
        ASSERT_TRUE(display.ShowsItsState()) << "frame " << i;
    }
}

TEST(IncrementalDraw, IsWholeWithTestArtwork) {
    const CGraphicsSession session;
    const CPictureDirectory directory;
    Write(TestArtwork::Glyphs::WithMargins);
    ExpectEveryStepOfTheDialToBeWhole();
    ExpectRandomRunsToBeWhole();
}

TEST(IncrementalDraw, IsWholeWithTheProgramsArtwork) {
    const CGraphicsSession session;
    const CDataDirectory directory;
    ExpectEveryStepOfTheDialToBeWhole();
    ExpectRandomRunsToBeWhole();
}

}  // namespace
