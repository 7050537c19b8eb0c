// Frames draw only what changed. Whatever came before, what stands on the screen after one must be what a
// full draw shows.

#include "platform/drawing/GraphicsSession.h"
#include "platform/windows/ClientDc.h"
#include "widgets/PictureDirectory.h"
#include "widgets/TestArtwork.h"
#include "widgets/WidgetSet.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <random>

namespace {

// What a reading can have, with room to spare: cents end near 51.
constexpr int LARGEST_CENTS = 55;

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
    CStageWnd m_wndLive;
    CWidgetSet m_live;

private:
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
        for (int nFrom = -LARGEST_CENTS; nFrom <= LARGEST_CENTS; ++nFrom) {
            ASSERT_TRUE(display.DialShows(0, nFrom)) << nTo << " to " << nFrom << " cents";
            ASSERT_TRUE(display.DialShows(0, nTo)) << nFrom << " to " << nTo << " cents";
        }
    }
}

void ExpectRandomRunsToBeWhole() {
    std::mt19937 random(20);
    const auto number = [&random](int nLow, int nHigh) {
        return std::uniform_int_distribution(nLow, nHigh)(random);
    };
    CLiveDisplay display;
    for (int i = 0; i < 800; ++i) {
        DisplayState& state = display.m_state;
        state.fLevel = static_cast<float>(number(-10, 110)) / 100.0F;
        if (number(0, 3) > 0) {
            state.fHz = number(0, 9) == 0 ? 0.0F : static_cast<float>(number(30, 800));
            state.nCents = number(-LARGEST_CENTS, LARGEST_CENTS);
            state.nSemitone = number(0, SEMITONES - 1);
        }
        const bool bColorChanged = number(0, 4) == 0;
        if (bColorChanged) {
            state.clrDialNeedle = static_cast<COLORREF>(number(0, 0xFFFFFF));
        }
        if (number(0, 20) == 0) {
            state.clrText = static_cast<COLORREF>(number(0, 0xFFFFFF));
            state.clrHigh = static_cast<COLORREF>(number(0, 0xFFFFFF));
            state.clrLow = static_cast<COLORREF>(number(0, 0xFFFFFF));
            state.clrNeedle = static_cast<COLORREF>(number(0, 0xFFFFFF));
            state.fA = static_cast<float>(number(4300, 4500)) / 10.0F;
            for (StringNote& note : state.tuning.m_strings) {
                note.Set(number(0, SEMITONES - 1), number(0, 2));
            }
            display.ChangeColorsAndTuning();
        }
        if (number(0, 9) == 0) {
            display.DrawLiveInFull();
        }
        display.Frame(bColorChanged);
        ASSERT_TRUE(display.ShowsItsState()) << "frame " << i;
    }
}

class IncrementalDraw : public testing::Test {
protected:
    CGraphicsSession m_session;
};

TEST_F(IncrementalDraw, EveryStepOfTheDialWithTestArtwork) {
    const CPictureDirectory directory;
    Write(TestArtwork::Glyphs::WithMargins);
    ExpectEveryStepOfTheDialToBeWhole();
}

TEST_F(IncrementalDraw, EveryStepOfTheDialWithTheProgramsArtwork) {
    const CDataDirectory directory;
    ExpectEveryStepOfTheDialToBeWhole();
}

TEST_F(IncrementalDraw, RandomRunsWithTestArtwork) {
    const CPictureDirectory directory;
    Write(TestArtwork::Glyphs::WithMargins);
    ExpectRandomRunsToBeWhole();
}

TEST_F(IncrementalDraw, RandomRunsWithTheProgramsArtwork) {
    const CDataDirectory directory;
    ExpectRandomRunsToBeWhole();
}

// The whole display in three states; the pictures stay in the directory of the build, for a look.
TEST_F(IncrementalDraw, ThreeStatesInPictures) {
    const CDataDirectory directory;
    const std::filesystem::path path = std::filesystem::path(FRETVANE_BINARY_DIR) / "pictures";
    std::filesystem::create_directories(path);
    CLiveDisplay display;
    EXPECT_TRUE(display.ShowsItsState());
    EXPECT_TRUE(display.m_wndLive.Save((path / "widgets-start.ppm").string()));
    DisplayState& state = display.m_state;
    state.clrDialNeedle = state.clrNeedle;
    state.fLevel = 0.7F;
    state.fHz = 148.0F;
    state.nSemitone = 2;
    state.nCents = 14;
    display.Frame(true);
    EXPECT_TRUE(display.ShowsItsState());
    EXPECT_TRUE(display.m_wndLive.Save((path / "widgets-d.ppm").string()));
    state.tuning.m_strings = {{{1, 0}, {8, 0}, {1, 1}, {6, 1}, {10, 1}, {3, 2}}};
    state.clrText = 0x0000C0;
    state.clrHigh = 0x0000FF;
    state.fLevel = 1.0F;
    state.fHz = 103.8F;
    state.nSemitone = 8;
    state.nCents = -47;
    display.ChangeColorsAndTuning();
    display.Frame();
    EXPECT_TRUE(display.ShowsItsState());
    EXPECT_TRUE(display.m_wndLive.Save((path / "widgets-g-sharp.ppm").string()));
}

}  // namespace
