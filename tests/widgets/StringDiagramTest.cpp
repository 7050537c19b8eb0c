#include "platform/drawing/SysColors.h"
#include "support/GraphicsSession.h"
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
    bool bEnabled;
    std::array<StringNote, 6> notes;
    std::array<CString, 6> names;  // to be read above the strings

    // The n of "string<n>.bmp": octave 2 is wound.
    int File(std::size_t nString) const { return !bEnabled ? 1 : names.at(nString).back() == '2' ? 3 : 2; }
};

// Semitones from C with the octave index: on both sides of the octaves' edges, and with accidentals.
const State STATES[] = {
    {true, {{{0, 1}, {11, 0}, {0, 2}, {11, 1}, {11, 0}, {0, 1}}}, {"C3", "B2", "C4", "B3", "B2", "C3"}},
    {false, {{{10, 2}, {8, 1}, {6, 0}, {3, 0}, {1, 1}, {11, 2}}}, {"Bb4", "G#3", "F#2", "Eb2", "C#3", "B4"}},
};

TEST(StringDiagramTest, FullPictureOfEachState) {
    const CGraphicsSession session;
    const CPictureDirectory directory;
    Write(Glyphs::Boxes);
    CStageWnd wnd;
    CStringDiagram diagram;
    ASSERT_TRUE(diagram.Create(&wnd));
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(80, "MS Sans Serif"));
    for (const State& state : STATES) {
        SCOPED_TRACE(state.bEnabled);
        diagram.SetTuning({state.notes, {}, 0});
        EXPECT_TRUE(TouchesExactly([&](CDC* pDc) { diagram.Draw(pDc, state.bEnabled); }, {DIAGRAM}));
        wnd.Draw([&](CDC* pDc) { diagram.Draw(pDc, state.bEnabled); });

        CStageWnd wndText;
        wndText.Draw([&](CDC* pDc) {
            pDc->FillSolidRect(DIAGRAM, WHITE);
            pDc->SetBkMode(TRANSPARENT);
            pDc->SetTextColor(state.bEnabled ? 0 : GetSysColor(COLOR_GRAYTEXT));
            pDc->SelectObject(&font);
            int x = 36;
            for (const CString& strName : state.names) {
                pDc->DrawText(strName, {x, 37, x + 24, 52}, DT_VCENTER | DT_SINGLELINE);
                x += 25;
            }
        });
        // All pictures begin on one row, on which "string3.bmp" ends at the frame.
        EXPECT_TRUE(FramedPixelsAre(wnd, DIAGRAM, [&](int x, int y) {
            const auto nString = static_cast<std::size_t>((x - 20) / 25);
            const int xString = (x - 20) % 25;
            if (x >= 20 && nString < 6 && xString < 20 && y >= 26 &&
                y < 26 + StringHeight(state.File(nString))) {
                return StringAt(state.File(nString), xString, y - 26);
            }
            return wndText.GetPixel(DIAGRAM.left + x, DIAGRAM.top + y);
        }));
    }
}

}  // namespace
