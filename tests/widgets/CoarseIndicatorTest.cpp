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
const Tuning OPEN_G = MakeTuning({{{D, 0}, {G, 0}, {D, 1}, {G, 1}, {B, 1}, {D, 2}}});
const Tuning ACCIDENTALS = MakeTuning({{{1, 0}, {8, 0}, {1, 0}, {6, 1}, {10, 1}, {3, 2}}});
const Tuning PAIRS = MakeTuning({{{3, 0}, {3, 0}, {10, 0}, {10, 0}, {6, 1}, {1, 2}}});
const Tuning FALLING = MakeTuning({{{E, 2}, {B, 1}, {G, 1}, {D, 1}, {A, 0}, {E, 0}}});
const Tuning WIDEST = MakeTuning({{{C, 0}, {C, 1}, {6, 1}, {C, 2}, {6, 2}, {B, 2}}});
const Tuning NARROWEST = MakeTuning({{{E, 0}, {F, 0}, {E, 0}, {F, 0}, {E, 0}, {E, 0}}});
const Tuning UNISON = MakeTuning({{{E, 0}, {E, 0}, {E, 0}, {E, 0}, {E, 0}, {E, 0}}});

const std::vector<int> STANDARD_MARKS = {15, 107, 200, 292, 366, 459};
const std::vector<const char*> STANDARD_NAMES = {"E", "A", "D", "G", "B", "E"};

struct State {
    const char* szName;
    const Tuning& tuning;
    float fA;
    float fHz;
    int nHighlight;
    std::vector<int> marks = STANDARD_MARKS;
    std::vector<const char*> names = STANDARD_NAMES;
};

// A mark lies 444 pixels x its semitones above the lowest / those of the highest, from 15 on; the highlight
// two pixels to the left of the mark that the same pitch would have, between 2 and 464.
const State STATES[] = {
    {"nothing heard", STANDARD, 440.0F, 0.0F, 13},
    {"lowest string", STANDARD, 440.0F, 82.41F, 13},
    {"second string", STANDARD, 440.0F, 110.0F, 105},
    {"highest string", STANDARD, 440.0F, 329.63F, 457},
    {"too low", STANDARD, 440.0F, 40.0F, 2},
    {"too high", STANDARD, 440.0F, 700.0F, 464},
    {"another A", STANDARD, 430.0F, 107.5F, 105},
    // 5, 12, 17, 21 and 24: 92.5, 222, 314.5, 388.5, 444. The A is heard, 7 semitones up: 129.5.
    {"open G", OPEN_G, 450.0F, 112.5F, 142, {15, 107, 237, 329, 403, 459}, {"D", "G", "D", "G", "B", "D"}},
    // 7, 17, 21 and 26: 119.5, 290.3, 358.6 and 444. The highlight is over the F#.
    {"accidentals",
     ACCIDENTALS,
     440.0F,
     185.0F,
     303,
     {15, 134, 305, 373, 459},
     {"C#", "G#", "F#", "Bb", "Eb"}},
    // 7, 15 and 22: 141.3, 302.7 and, in single precision, a hair less than 444. The Bb is heard.
    {"two notes twice", PAIRS, 440.0F, 116.54F, 154, {15, 156, 317, 458}, {"Eb", "Bb", "F#", "C#"}},
    {"from high to low",
     FALLING,
     440.0F,
     246.94F,
     364,
     {459, 366, 292, 200, 107, 15},
     {"E", "B", "G", "D", "A", "E"}},
    // 12, 18, 24, 30 and 35: 152.2, 228.3, 304.5, 380.6, 444.
    {"widest", WIDEST, 440.0F, 65.41F, 13, {15, 167, 243, 319, 395, 459}, {"C", "C", "F#", "C", "F#", "B"}},
    {"a semitone", NARROWEST, 440.0F, 84.8F, 233, {15, 459}, {"E", "F"}},
    // One pixel for each octave from the note.
    {"one note", UNISON, 440.0F, 329.7F, 15, {236}, {"E"}},
    {"one note, below it", UNISON, 440.0F, 40.0F, 12, {236}, {"E"}},
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
    // Where the highlight begins, seen in a row that has neither text nor bar nor ticks.
    int HighlightX() const {
        int x = STRIP.left + 2;
        while (x < STRIP.right - 2 && m_wnd.GetPixel(x, STRIP.top + 45) == WHITE) {
            ++x;
        }
        return x - STRIP.left;
    }

    CGraphicsSession m_session;
    CPictureDirectory m_directory;
    CStageWnd m_wnd;
    CCoarseIndicator m_coarse;
};

// The picture as its geometry says.
testing::AssertionResult ShowsTheState(const CStageWnd& wnd, const State& state, COLORREF clrTint) {
    CFont font;
    EXPECT_TRUE(font.CreatePointFont(80, "MS Sans Serif"));
    // The names alone, on either ground.
    const auto write = [&](CStageWnd& wndNames, COLORREF clrGround) {
        wndNames.Draw([&](CDC* pDc) {
            pDc->FillSolidRect(STRIP, clrGround);
            pDc->SetBkMode(TRANSPARENT);
            pDc->SelectObject(&font);
            for (std::size_t i = 0; i < state.marks.size(); ++i) {
                const int x = STRIP.left + state.marks[i];
                pDc->DrawText(state.names[i], {x + 1, STRIP.top + 4, x + 20, STRIP.top + 18}, 0);
            }
        });
    };
    CStageWnd wndOnWhite;
    CStageWnd wndOnTint;
    write(wndOnWhite, WHITE);
    write(wndOnTint, clrTint);
    return PixelsAre(wnd, STRIP, [&](int xWindow, int yWindow) {
        const int x = xWindow - STRIP.left;
        const int y = yWindow - STRIP.top;
        if (const COLORREF clrEdge = SunkenEdgeAt(STRIP, xWindow, yWindow); clrEdge != CLR_INVALID) {
            return clrEdge;
        }
        const bool bLit = x >= state.nHighlight && x < state.nHighlight + 14;
        for (const int nMark : state.marks) {
            const int xTic = x - nMark;
            const int yTic = y - 19;
            if (xTic >= 0 && xTic < 9 && yTic >= 0 && yTic < 24) {
                const bool bOuter = xTic < 2 || xTic > 6;
                const bool bBarRow = y >= 22 && y < 27;
                return bLit && bOuter && !bBarRow ? clrTint : TicAt(xTic, yTic);
            }
        }
        return y >= 22 && y < 27 && x >= 8 && x < 472
                   ? BarAt(x - 8, y - 22)
                   : (bLit ? wndOnTint : wndOnWhite).GetPixel(xWindow, yWindow);
    });
}

TEST_F(CoarseIndicatorTest, FullPictureOfEachState) {
    for (const State& state : STATES) {
        SCOPED_TRACE(state.szName);
        Set(state);
        DrawFull();
        EXPECT_TRUE(ShowsTheState(m_wnd, state, DEFAULT_TINT));
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
    const auto frame = [this](CDC* pDc) { m_coarse.Draw(pDc, false); };
    EXPECT_TRUE(TouchesExactly(frame, {{12, 312, 26, 358}})) << "before the first draw it stands at 2";
    m_coarse.SetFrequency(0.0F);
    EXPECT_TRUE(TouchesExactly([this](CDC* pDc) { m_coarse.Draw(pDc, true); }, {STRIP}));
    const std::vector<std::pair<float, std::vector<RECT>>> STEPS{{82.41F, {}},
                                                                 {110.0F, {{23, 312, 129, 358}}},
                                                                 {110.0F, {}},
                                                                 {40.0F, {{12, 312, 129, 358}}},
                                                                 {700.0F, {{12, 312, 488, 358}}}};
    for (const auto& [fHz, rects] : STEPS) {
        m_coarse.SetFrequency(fHz);
        EXPECT_TRUE(TouchesExactly(frame, rects)) << fHz;
    }
    m_coarse.Rebuild();
    EXPECT_TRUE(TouchesExactly(frame, {{474, 312, 488, 358}})) << "on another scale it is drawn anew";
}

// 30% of the way from white to the colour, cut toward white.
TEST_F(CoarseIndicatorTest, TheTintFollowsTheColor) {
    struct Row {
        COLORREF clr;
        COLORREF clrTint;
    };
    constexpr Row ROWS[] = {
        {0xFFFFFF, 0xFFFFFF}, {0x40FE01, 0xC6FFB3}, {0x000205, 0xB3B4B4}, {0x0000FF, 0xB3B3FF}};
    const State& state = STATES[2];
    Set(state);
    for (const Row& row : ROWS) {
        m_coarse.SetColor(row.clr);
        m_coarse.Rebuild();
        DrawFull();
        EXPECT_TRUE(ShowsTheState(m_wnd, state, row.clrTint));
    }
    // Only a rebuild takes it up.
    m_coarse.SetColor(0xA00000);
    DrawFull();
    EXPECT_EQ(m_wnd.GetPixel(STRIP.left + 105, STRIP.top + 45), COLORREF{0xB3B3FF});
}

}  // namespace
