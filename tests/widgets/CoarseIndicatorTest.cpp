#include "support/GraphicsSession.h"
#include "widgets/CoarseIndicator.h"
#include "widgets/PictureDirectory.h"
#include "widgets/TestArtwork.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using namespace TestArtwork;

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr COLORREF TINT = 0xE3B3B3;  // of the default colour
constexpr RECT STRIP = {10, 310, 490, 360};

struct Sound {
    float fA;
    float fHz;
    int nHighlight;
};
struct State {
    const char* szName;
    std::array<StringNote, 6> notes;
    Sound sound;
    std::vector<std::pair<int, const char*>> marks;
};

// A mark lies 444 pixels x its semitones above the lowest / those of the highest, from 15 on; the highlight
// two pixels to the left of the mark that the same pitch would have, between 2 and 464.
const State STATES[] = {
    {"second string, another A",
     Tuning::StandardE().m_strings,
     {430.0F, 107.5F, 105},
     {{15, "E"}, {107, "A"}, {200, "D"}, {292, "G"}, {366, "B"}, {459, "E"}}},
    {"from high to low, too high",
     {{{4, 2}, {11, 1}, {7, 1}, {2, 1}, {9, 0}, {4, 0}}},
     {440.0F, 700.0F, 464},
     {{459, "E"}, {366, "B"}, {292, "G"}, {200, "D"}, {107, "A"}, {15, "E"}}},
    // 7, 17, 21 and 26: 119.5, 290.3, 358.6 and 444. The highlight is over the F#.
    {"accidentals, one of them twice",
     {{{1, 0}, {8, 0}, {1, 0}, {6, 1}, {10, 1}, {3, 2}}},
     {440.0F, 185.0F, 303},
     {{15, "C#"}, {134, "G#"}, {305, "F#"}, {373, "Bb"}, {459, "Eb"}}},
    // 7, 15 and 22: 141.3, 302.7 and, in single precision, a hair less than 444. The Bb is heard.
    {"two notes twice",
     {{{3, 0}, {3, 0}, {10, 0}, {10, 0}, {6, 1}, {1, 2}}},
     {440.0F, 116.54F, 154},
     {{15, "Eb"}, {156, "Bb"}, {317, "F#"}, {458, "C#"}}},
    // One pixel for each octave from the note.
    {"one note", {{{4, 0}, {4, 0}, {4, 0}, {4, 0}, {4, 0}, {4, 0}}}, {440.0F, 329.7F, 15}, {{236, "E"}}},
};

class CoarseIndicatorTest : public testing::Test {
protected:
    CoarseIndicatorTest() {
        Write(Glyphs::Boxes);
        EXPECT_TRUE(m_coarse.Create(&m_wnd));
        m_coarse.SetTuning(Tuning::StandardE());
    }

    void DrawFull() {
        m_wnd.Draw([this](CDC* pDc) { m_coarse.Draw(pDc, true); });
    }
    // In a row that has neither text nor bar nor ticks.
    COLORREF GroundAt(int x) const { return m_wnd.GetPixel(STRIP.left + x, STRIP.top + 45); }

    CGraphicsSession m_session;
    CPictureDirectory m_directory;
    CStageWnd m_wnd;
    CCoarseIndicator m_coarse;
};

TEST_F(CoarseIndicatorTest, FullPictureOfEachState) {
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(80, "MS Sans Serif"));
    for (const State& state : STATES) {
        SCOPED_TRACE(state.szName);
        m_coarse.SetTuning({state.notes, {}, 0});
        m_coarse.SetAFrequency(state.sound.fA);
        m_coarse.SetFrequency(state.sound.fHz);
        DrawFull();

        const int nLit = STRIP.left + state.sound.nHighlight;
        CStageWnd wndNames;  // the names alone, on either ground
        wndNames.Draw([&](CDC* pDc) {
            pDc->FillSolidRect(STRIP, WHITE);
            pDc->FillSolidRect({nLit, STRIP.top, nLit + 14, STRIP.bottom}, TINT);
            pDc->SetBkMode(TRANSPARENT);
            pDc->SelectObject(&font);
            for (const auto& [nMark, szName] : state.marks) {
                const int x = STRIP.left + nMark;
                pDc->DrawText(szName, {x + 1, STRIP.top + 4, x + 20, STRIP.top + 18}, 0);
            }
        });
        EXPECT_TRUE(FramedPixelsAre(m_wnd, STRIP, [&](int x, int y) {
            const COLORREF clrGround = wndNames.GetPixel(STRIP.left + x, STRIP.top + y);
            const bool bBarRow = y >= 22 && y < 27;
            for (const auto& mark : state.marks) {
                const int xTic = x - mark.first;
                if (xTic >= 0 && xTic < 9 && y >= 19 && y < 43) {
                    const bool bOuter = xTic < 2 || xTic > 6;
                    return bOuter && !bBarRow && clrGround == TINT ? TINT : TicAt(xTic, y - 19);
                }
            }
            return bBarRow && x >= 8 && x < 472 ? BarAt(x - 8, y - 22) : clrGround;
        }));
    }
}

// What has no logarithm leaves the highlight on the lowest mark, and not at the limit of the strip.
TEST_F(CoarseIndicatorTest, TheHighlightOfAnyPitch) {
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    constexpr float NOTHING = std::numeric_limits<float>::quiet_NaN();
    DrawFull();
    using Row = std::pair<float, int>;
    for (const auto& [fHz, nExpected] :
         {Row{82.41F, 13}, Row{329.63F, 457}, Row{40.0F, 2}, Row{0.0F, 13}, Row{700.0F, 464}, Row{-1.0F, 13},
          Row{std::numeric_limits<float>::denorm_min(), 2}, Row{INFINITE, 13},
          Row{std::numeric_limits<float>::max(), 464}, Row{NOTHING, 13}}) {
        m_coarse.SetFrequency(fHz);
        m_wnd.Draw([this](CDC* pDc) { m_coarse.Draw(pDc, false); });
        int x = 2;
        while (x < STRIP.Width() - 2 && GroundAt(x) == WHITE) {
            ++x;
        }
        EXPECT_EQ(x, nExpected) << fHz;
    }
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
    for (const auto& [clr, clrTint] :
         {std::pair<COLORREF, COLORREF>{0x40FE01, 0xC6FFB3}, {0x000205, 0xB3B4B4}, {0x0000FF, 0xB3B3FF}}) {
        m_coarse.SetColor(clr);
        m_coarse.Rebuild();
        DrawFull();
        EXPECT_EQ(GroundAt(13), clrTint);
    }
}

}  // namespace
