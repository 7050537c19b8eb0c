#include "platform/drawing/GraphicsSession.h"
#include "platform/drawing/SysColors.h"
#include "widgets/PictureDirectory.h"
#include "widgets/StringDiagram.h"
#include "widgets/TestArtwork.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using namespace TestArtwork;

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr RECT DIAGRAM = {20, 34, 190, 102};

struct State {
    const char* szName;
    std::array<StringNote, 6> notes;
    std::array<const char*, 6> names;  // to be read above the strings
    bool bEnabled = true;

    // The n of "string<n>.bmp": octave 2 is wound.
    int File(std::size_t nString) const {
        return !bEnabled ? 1 : CString(names.at(nString)).back() == '2' ? 3 : 2;
    }
};

// Semitones from C with the octave index: each string in each octave, and on both sides of the octaves'
// edges.
const State STATES[] = {
    {"standard", {{{4, 0}, {9, 0}, {2, 1}, {7, 1}, {11, 1}, {4, 2}}}, {"E2", "A2", "D3", "G3", "B3", "E4"}},
    {"from high to low",
     {{{5, 2}, {11, 1}, {0, 1}, {11, 0}, {6, 0}, {0, 0}}},
     {"F4", "B3", "C3", "B2", "F#2", "C2"}},
    {"around C3 and C4",
     {{{0, 1}, {11, 0}, {0, 2}, {11, 1}, {11, 0}, {0, 1}}},
     {"C3", "B2", "C4", "B3", "B2", "C3"}},
    {"disabled, with accidentals",
     {{{10, 2}, {8, 1}, {6, 0}, {3, 0}, {1, 1}, {11, 2}}},
     {"Bb4", "G#3", "F#2", "Eb2", "C#3", "B4"},
     false},
};

class StringDiagramTest : public testing::Test {
protected:
    StringDiagramTest() { Write(Glyphs::Boxes); }

    CGraphicsSession m_session;
    CPictureDirectory m_directory;
    CStageWnd m_wnd;
    CStringDiagram m_diagram;
};

TEST_F(StringDiagramTest, FullPictureOfEachState) {
    ASSERT_TRUE(m_diagram.Create(&m_wnd));
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(80, "MS Sans Serif"));
    for (const State& state : STATES) {
        SCOPED_TRACE(state.szName);
        Tuning tuning;
        tuning.m_strings = state.notes;
        m_diagram.SetTuning(tuning);
        EXPECT_TRUE(TouchesExactly([&](CDC* pDc) { m_diagram.Draw(pDc, state.bEnabled); }, {DIAGRAM}));
        m_wnd.Draw([&](CDC* pDc) { m_diagram.Draw(pDc, state.bEnabled); });

        CStageWnd wndText;
        wndText.Draw([&](CDC* pDc) {
            pDc->FillSolidRect(DIAGRAM, WHITE);
            pDc->SetBkMode(TRANSPARENT);
            pDc->SetTextColor(state.bEnabled ? 0 : GetSysColor(COLOR_GRAYTEXT));
            pDc->SelectObject(&font);
            for (int k = 0; k < 6; ++k) {
                pDc->DrawText(state.names[static_cast<std::size_t>(k)], {36 + 25 * k, 37, 60 + 25 * k, 52},
                              DT_VCENTER | DT_SINGLELINE);
            }
        });
        EXPECT_TRUE(PixelsAre(m_wnd, DIAGRAM, [&](int x, int y) -> COLORREF {
            if (const COLORREF clrEdge = SunkenEdgeAt(DIAGRAM, x, y); clrEdge != CLR_INVALID) {
                return clrEdge;
            }
            // The pictures, 20 by 40, end at row 99.
            const int nString = (x - 40) / 25;
            const int xString = (x - 40) % 25;
            if (x >= 40 && nString < 6 && xString < 20 && y >= 60 && y < 100) {
                return StringAt(state.File(static_cast<std::size_t>(nString)), xString, y - 60);
            }
            return wndText.GetPixel(x, y);
        }));
    }
}

// Only the height of "string3.bmp" counts.
TEST_F(StringDiagramTest, AllPicturesBeginOnOneRow) {
    WriteBitmap("string2.bmp", 20, 30, [](int x, int y) { return StringAt(2, x, y); });
    ASSERT_TRUE(m_diagram.Create(&m_wnd));
    m_diagram.SetTuning(Tuning::StandardE());
    m_wnd.Draw([this](CDC* pDc) { m_diagram.Draw(pDc, true); });
    EXPECT_EQ(m_wnd.GetPixel(40, 60), StringAt(3, 0, 0));
    EXPECT_EQ(m_wnd.GetPixel(90, 60), StringAt(2, 0, 0));
    EXPECT_EQ(m_wnd.GetPixel(90, 89), StringAt(2, 0, 29));
    EXPECT_EQ(m_wnd.GetPixel(90, 90), WHITE);
}

}  // namespace
