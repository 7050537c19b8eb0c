#include "platform/drawing/GraphicsSession.h"
#include "widgets/CoarseIndicator.h"
#include "widgets/PictureDirectory.h"
#include "widgets/TestArtwork.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace TestArtwork;

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr COLORREF DEFAULT_TINT = 0xE3B3B3;
constexpr RECT STRIP = {10, 310, 490, 360};

Tuning MakeTuning(const std::array<StringNote, 6>& notes) {
    Tuning tuning;
    tuning.m_strings = notes;
    return tuning;
}

// The semitones of the notes, from C.
constexpr int C = 0;
constexpr int D = 2;
constexpr int E = 4;
constexpr int F = 5;
constexpr int G = 7;
constexpr int A = 9;
constexpr int B = 11;

const Tuning STANDARD = Tuning::StandardE();
const Tuning DROP_D = MakeTuning({{{D, 0}, {A, 0}, {D, 1}, {G, 1}, {B, 1}, {E, 2}}});
const Tuning OPEN_G = MakeTuning({{{D, 0}, {G, 0}, {D, 1}, {G, 1}, {B, 1}, {D, 2}}});
const Tuning DOUBLED = MakeTuning({{{E, 0}, {A, 0}, {D, 1}, {D, 1}, {B, 1}, {E, 2}}});
const Tuning FALLING = MakeTuning({{{E, 2}, {B, 1}, {G, 1}, {D, 1}, {A, 0}, {E, 0}}});
const Tuning WIDEST = MakeTuning({{{C, 0}, {C, 1}, {6, 1}, {C, 2}, {6, 2}, {B, 2}}});
const Tuning NARROWEST = MakeTuning({{{E, 0}, {F, 0}, {E, 0}, {F, 0}, {E, 0}, {E, 0}}});
const Tuning UNISON = MakeTuning({{{E, 0}, {E, 0}, {E, 0}, {E, 0}, {E, 0}, {E, 0}}});

struct State {
    const char* szName;
    const Tuning& tuning;
    float fA;
    float fHz;
    std::vector<int> marks;
    int nHighlight;
};

// A mark lies 444 pixels x its semitones above the lowest / those of the highest, from 15 on; the highlight
// two pixels to the left of the mark that the same pitch would have, between 2 and 464.
const State STATES[] = {
    {"nothing heard", STANDARD, 440.0F, 0.0F, {15, 107, 200, 292, 366, 459}, 13},
    {"lowest string", STANDARD, 440.0F, 82.41F, {15, 107, 200, 292, 366, 459}, 13},
    {"second string", STANDARD, 440.0F, 110.0F, {15, 107, 200, 292, 366, 459}, 105},
    {"highest string", STANDARD, 440.0F, 329.63F, {15, 107, 200, 292, 366, 459}, 457},
    {"too low", STANDARD, 440.0F, 40.0F, {15, 107, 200, 292, 366, 459}, 2},
    {"too high", STANDARD, 440.0F, 700.0F, {15, 107, 200, 292, 366, 459}, 464},
    {"another A", STANDARD, 430.0F, 107.5F, {15, 107, 200, 292, 366, 459}, 105},
    // 7, 12, 17, 21 and 26 semitones: 119.5, 204.9, 290.3, 358.6, 444. The G is heard: 17 x 444 / 26 + 13.
    {"dropped D", DROP_D, 440.0F, 196.0F, {15, 134, 219, 305, 373, 459}, 303},
    // 5, 12, 17, 21 and 24: 92.5, 222, 314.5, 388.5, 444. The A is heard, 7 semitones up: 129.5.
    {"open G", OPEN_G, 450.0F, 112.5F, {15, 107, 237, 329, 403, 459}, 142},
    {"a note twice", DOUBLED, 440.0F, 0.0F, {15, 107, 200, 366, 459}, 13},
    {"from high to low", FALLING, 440.0F, 246.94F, {459, 366, 292, 200, 107, 15}, 364},
    // 12, 18, 24, 30 and 35: 152.2, 228.3, 304.5, 380.6, 444.
    {"widest", WIDEST, 440.0F, 65.41F, {15, 167, 243, 319, 395, 459}, 13},
    {"a semitone", NARROWEST, 440.0F, 84.8F, {15, 459}, 233},
    // One pixel for each octave from the note.
    {"one note", UNISON, 440.0F, 329.7F, {236}, 15},
    {"one note, below it", UNISON, 440.0F, 40.0F, {236}, 12},
};

class CoarseIndicatorTest : public testing::Test {
protected:
    CoarseIndicatorTest() {
        Write(Glyphs::Boxes);
        EXPECT_TRUE(m_coarse.Create(&m_wnd));
        m_coarse.SetTuning(STANDARD);
    }

    void Set(const State& state) {
        m_coarse.SetTuning(state.tuning);
        m_coarse.SetAFrequency(state.fA);
        m_coarse.SetFrequency(state.fHz);
    }
    void DrawFull() {
        m_wnd.Draw([this](CDC* pDc) { m_coarse.Draw(pDc, true); });
    }
    void DrawFrame(float fHz) {
        m_coarse.SetFrequency(fHz);
        m_wnd.Draw([this](CDC* pDc) { m_coarse.Draw(pDc, false); });
    }
    // Where the highlight stands, seen in a row that has neither text nor bar nor ticks.
    int HighlightX() const {
        const int y = STRIP.top + 45;
        for (int x = STRIP.left + 2; x < STRIP.right - 2; ++x) {
            if (m_wnd.GetPixel(x, y) != WHITE) {
                EXPECT_EQ(m_wnd.RowRun(x, y), (CStageWnd::Run{x, x + 14}));
                EXPECT_EQ(m_wnd.ColumnRun(x, y).nEnd, STRIP.top + 48);
                return x - STRIP.left;
            }
        }
        return -1;
    }

    CGraphicsSession m_session;
    CPictureDirectory m_directory;
    CStageWnd m_wnd;
    CCoarseIndicator m_coarse;
};

// The picture as its geometry says, without the names.
COLORREF ExpectedAt(const State& state, COLORREF clrTint, int xWindow, int yWindow) {
    const int x = xWindow - STRIP.left;
    const int y = yWindow - STRIP.top;
    if (const COLORREF clrEdge = SunkenEdgeAt(STRIP, xWindow, yWindow); clrEdge != CLR_INVALID) {
        return clrEdge;
    }
    const bool bLit = x >= state.nHighlight && x < state.nHighlight + 14;
    const COLORREF clrGround = bLit ? clrTint : WHITE;
    if (y >= 4 && y < 18) {
        const bool bName = std::any_of(state.marks.begin(), state.marks.end(),
                                       [x](int nMark) { return x > nMark && x < nMark + 20; });
        return bName ? CLR_INVALID : clrGround;
    }
    for (const int nMark : state.marks) {
        const int xTic = x - nMark;
        const int yTic = y - 19;
        if (xTic >= 0 && xTic < 9 && yTic >= 0 && yTic < 24) {
            const bool bOuter = xTic < 2 || xTic > 6;
            const bool bBarRow = y >= 22 && y < 27;
            return bLit && bOuter && !bBarRow ? clrTint : TicAt(xTic, yTic);
        }
    }
    return y >= 22 && y < 27 && x >= 8 && x < 472 ? BarAt(x - 8, y - 22) : clrGround;
}

TEST_F(CoarseIndicatorTest, FullPictureOfEachState) {
    for (const State& state : STATES) {
        SCOPED_TRACE(state.szName);
        Set(state);
        DrawFull();
        EXPECT_TRUE(
            PixelsAre(m_wnd, STRIP, [&](int x, int y) { return ExpectedAt(state, DEFAULT_TINT, x, y); }));
    }
}

TEST_F(CoarseIndicatorTest, FramesLeadToTheSamePictures) {
    const float afHz[] = {0.0F, 82.41F, 110.0F, 40.0F, 700.0F, 329.63F, 97.0F, 98.0F, 98.0F, 0.0F, 1.0e6F};
    DrawFull();
    for (const float fHz : afHz) {
        DrawFrame(fHz);
        CStageWnd wndFresh;
        CCoarseIndicator coarse;
        ASSERT_TRUE(coarse.Create(&wndFresh));
        coarse.SetTuning(STANDARD);
        coarse.SetFrequency(fHz);
        wndFresh.Draw([&](CDC* pDc) { coarse.Draw(pDc, true); });
        EXPECT_TRUE(ShowTheSame(m_wnd, wndFresh, STRIP)) << fHz;
    }
}

// What has no logarithm leaves the highlight on the lowest mark, and not at the limit of the strip.
TEST_F(CoarseIndicatorTest, WhatIsNoPitchStandsAtTheLowestMark) {
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    DrawFull();
    for (const float fHz : {0.0F, -0.0F, -1.0F, INFINITE, std::numeric_limits<float>::quiet_NaN()}) {
        DrawFrame(700.0F);
        EXPECT_EQ(HighlightX(), 464);
        DrawFrame(fHz);
        EXPECT_EQ(HighlightX(), 13) << fHz;
    }
    DrawFrame(std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(HighlightX(), 2);
    DrawFrame(std::numeric_limits<float>::max());
    EXPECT_EQ(HighlightX(), 464);
}

TEST_F(CoarseIndicatorTest, AFrameSendsOneRectangleOverOldAndNewHighlight) {
    m_coarse.SetFrequency(0.0F);
    DrawFull();
    const auto frame = [this](float fHz) {
        return [this, fHz](CDC* pDc) {
            m_coarse.SetFrequency(fHz);
            m_coarse.Draw(pDc, false);
        };
    };
    EXPECT_TRUE(TouchesExactly(frame(82.41F), {{23, 312, 37, 358}}));
    EXPECT_TRUE(TouchesExactly(frame(110.0F), {{23, 312, 129, 358}}));
    EXPECT_TRUE(TouchesExactly(frame(40.0F), {{12, 312, 129, 358}}));
    EXPECT_TRUE(TouchesExactly(frame(700.0F), {{12, 312, 488, 358}}));
    EXPECT_TRUE(TouchesExactly([this](CDC* pDc) { m_coarse.Draw(pDc, true); }, {STRIP}));
}

// Before the first full draw the highlight stood at 2, as far as a frame knows.
TEST_F(CoarseIndicatorTest, TheFirstFrameStartsAtTheLeftEnd) {
    EXPECT_TRUE(TouchesExactly([this](CDC* pDc) { m_coarse.Draw(pDc, false); }, {{12, 312, 26, 358}}));
}

// 30% of the way from white to the colour, cut toward white.
TEST_F(CoarseIndicatorTest, TheTintFollowsTheColor) {
    struct Row {
        COLORREF clr;
        COLORREF clrTint;
    };
    constexpr Row ROWS[] = {{0xA00000, 0xE3B3B3}, {0xFFFFFF, 0xFFFFFF}, {0x000000, 0xB3B3B3},
                            {0x40FE01, 0xC6FFB3}, {0x000205, 0xB3B4B4}, {0x0000FF, 0xB3B3FF}};
    State state = STATES[2];
    Set(state);
    for (const Row& row : ROWS) {
        m_coarse.SetColor(row.clr);
        m_coarse.Rebuild();
        DrawFull();
        EXPECT_TRUE(
            PixelsAre(m_wnd, STRIP, [&](int x, int y) { return ExpectedAt(state, row.clrTint, x, y); }));
    }
    // Only a rebuild takes it up.
    m_coarse.SetColor(0xA00000);
    DrawFull();
    EXPECT_EQ(m_wnd.GetPixel(STRIP.left + 105, STRIP.top + 45), COLORREF{0xB3B3FF});
}

TEST_F(CoarseIndicatorTest, EachMarkHasItsName) {
    m_coarse.SetFrequency(110.0F);
    DrawFull();
    constexpr const char* NAMES[] = {"E", "A", "D", "G", "B", "E"};
    constexpr int MARKS[] = {15, 107, 200, 292, 366, 459};
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(80, "MS Sans Serif"));
    for (std::size_t i = 0; i < 6; ++i) {
        SCOPED_TRACE(NAMES[i]);
        const RECT rcName = {STRIP.left + MARKS[i] + 1, STRIP.top + 4,
                             STRIP.left + std::min(MARKS[i] + 20, 478), STRIP.top + 18};
        CStageWnd wndExpected;
        wndExpected.Draw([&](CDC* pDc) {
            pDc->FillSolidRect(rcName, WHITE);
            if (i == 1) {  // lit: the highlight is 14 wide from 105 on
                pDc->FillSolidRect({rcName.left, rcName.top, STRIP.left + 119, rcName.bottom}, DEFAULT_TINT);
            }
            pDc->SetBkMode(TRANSPARENT);
            pDc->SelectObject(&font);
            EXPECT_GT(pDc->DrawText(NAMES[i], rcName, 0), 0);
        });
        EXPECT_TRUE(ShowTheSame(m_wnd, wndExpected, rcName));
        EXPECT_FALSE(PixelsAre(m_wnd, rcName, [](int, int) { return WHITE; }));
    }
}

// Without the limits of its rectangle a name would not be larger.
TEST_F(CoarseIndicatorTest, TheNamesFitTheirRectangle) {
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(80, "MS Sans Serif"));
    for (const char* szName : SEMITONE_NAMES) {
        CStageWnd wnd;
        wnd.Draw([&](CDC* pDc) {
            pDc->FillSolidRect({0, 0, 100, 100}, WHITE);
            pDc->SetBkMode(TRANSPARENT);
            pDc->SelectObject(&font);
            pDc->DrawText(szName, {20, 20, 100, 100}, 0);
        });
        EXPECT_FALSE(PixelsAre(wnd, {20, 20, 39, 34}, [](int, int) { return WHITE; })) << szName;
        EXPECT_TRUE(PixelsAre(wnd, {0, 0, 100, 100}, [](int x, int y) {
            return PtInRect({20, 20, 39, 34}, {x, y}) ? CLR_INVALID : WHITE;
        })) << szName;
    }
}

TEST_F(CoarseIndicatorTest, NeedsItsTwoFiles) {
    for (const char* szMissing : {"gTic.bmp", "gBar.bmp"}) {
        const CPictureDirectory directory;
        Write(Glyphs::Boxes);
        directory.Remove(szMissing);
        CStageWnd wnd;
        CCoarseIndicator coarse;
        EXPECT_FALSE(coarse.Create(&wnd)) << szMissing;
    }
}

}  // namespace
