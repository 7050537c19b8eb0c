#include "platform/base/String.h"
#include "platform/drawing/Pen.h"
#include "widgets/FineDial.h"
#include "widgets/NeedleGeometry.h"
#include "widgets/PictureDirectory.h"
#include "widgets/TestArtwork.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <climits>
#include <utility>

namespace {

using namespace TestArtwork;

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr COLORREF NEEDLE = 0x2040A0;
constexpr RECT DIAL = {250, 43, 490, 300};
constexpr int TEXT_TOP = 20;
constexpr int TEXT_BOTTOM = 47;

struct State {
    int nSemitone;
    const char* szNote;
    int nCents;
    POINT ptTip;
    POINT ptBase;
    int nStripX;
};
// Each semitone with a needle, whose ends were measured from the pivot (120, 270) on circles of radius 182
// and 30, 0.6 degrees a cent.
constexpr State STATES[] = {
    {0, "C", 0, {120, 89}, {120, 241}, 110},    {1, "C#", 1, {121, 89}, {120, 241}, 101},
    {2, "D", -1, {119, 89}, {120, 241}, 109},   {3, "Eb", 10, {139, 89}, {123, 241}, 119},
    {4, "E", -10, {101, 89}, {117, 241}, 91},   {5, "F", 25, {167, 95}, {127, 242}, 147},
    {6, "F#", -25, {73, 95}, {113, 242}, 63},   {7, "G", 50, {211, 113}, {135, 245}, 191},
    {8, "G#", -50, {30, 113}, {106, 245}, 20},  {9, "A", 46, {204, 109}, {133, 244}, 184},
    {10, "Bb", -38, {50, 103}, {109, 243}, 40}, {11, "B", -19, {85, 92}, {115, 241}, 75},
};

// In the rows of the text. The ones begin over the last column of the widest tens.
COLORREF TextAt(const CString& strNote, int nCents, int x) {
    const CString strCents = FormatText("%+03d", nCents);
    COLORREF clr = WHITE;
    const auto put = [&](const Strip& strip, char glyph, int nLeft) {
        const std::size_t k = strip.glyphs.find(glyph);
        const int nEnd = nLeft + strip.edges.at(k + 1) - strip.edges.at(k);
        clr = x >= nLeft && x < nEnd ? GlyphColor(glyph) : clr;
        return nEnd;
    };
    int nNoteX = 22;
    for (const char glyph : strNote) {
        nNoteX = put(LETTERS, glyph, nNoteX);
    }
    put(NUMERALS, strCents.at(0), strCents.at(0) == '+' ? 119 : 125);
    put(NUMERALS, strCents.at(1), 143);
    put(NUMERALS, strCents.at(2), 168);
    put(NUMERALS, '%', 195);
    return clr;
}

class FineDialTest : public testing::Test {
protected:
    FineDialTest() {
        Write(Glyphs::Boxes);
        EXPECT_TRUE(m_dial.Create(&m_wnd));
        m_dial.SetDigitColor(WHITE);
        m_dial.SetColor(NEEDLE);
    }

    void DrawFull(int nSemitone, int nCents) {
        m_dial.SetNote(nSemitone);
        m_dial.SetCents(nCents);
        m_wnd.Draw([this](CDC* pDc) { m_dial.Draw(pDc, true, false); });
    }

    CPictureDirectory m_directory;
    CStageWnd m_wnd;
    CFineDial m_dial;
};

TEST_F(FineDialTest, WholePictureOfEachState) {
    for (const State& state : STATES) {
        SCOPED_TRACE(state.szNote);
        EXPECT_EQ(GetNeedleGeometry(state.nCents).nStripX, state.nStripX);
        DrawFull(state.nSemitone, state.nCents);
        CStageWnd wndNeedle;  // alone, from the origin
        wndNeedle.Draw([&](CDC* pDc) {
            CPen pen(PS_SOLID, 5, NEEDLE);
            pDc->SelectObject(&pen);
            pDc->MoveTo(state.ptBase.x, state.ptBase.y);
            pDc->LineTo(state.ptTip.x, state.ptTip.y);
        });
        EXPECT_TRUE(FramedPixelsAre(m_wnd, DIAL, [&](int x, int y) {
            if (IsHub(x - 91, y - 232)) {
                return HUB_COLOR;
            }
            if (wndNeedle.GetPixel(x, y) == NEEDLE) {
                return NEEDLE;
            }
            if (y >= TEXT_TOP && y < TEXT_BOTTOM) {
                return TextAt(state.szNote, state.nCents, x);
            }
            return y >= 59 && y < 128 ? LabelAt(x - 2, y - 59) : WHITE;
        }));
    }
}

// Beyond what a reading has, there is no name, and the number stays at two digits.
TEST_F(FineDialTest, TextOfWhatIsNoReading) {
    const RECT rcText = {DIAL.left + 2, DIAL.top + TEXT_TOP, DIAL.right - 2, DIAL.top + TEXT_BOTTOM};
    for (const auto& [nCents, nShown] :
         {std::pair{-67, -67}, {72, 72}, {83, 83}, {100, 99}, {INT_MIN, -99}, {INT_MAX, 99}}) {
        DrawFull(nCents < 0 ? -1 : 12, nCents);
        EXPECT_TRUE(PixelsAre(m_wnd, rcText, [n = nShown](int x, int) { return TextAt("", n, x + 2); }))
            << nCents;
    }
}

// From one reading to the next: what goes to the window.
TEST_F(FineDialTest, AFrameSendsWhatChanged) {
    constexpr RECT NOTE = {270, 63, 330, 91};
    constexpr RECT NUMERALS_AREA = {369, 63, 469, 91};
    constexpr RECT NEEDLE_AREA = {252, 101, 488, 300};
    DrawFull(0, 0);
    struct Step {
        int nSemitone;
        int nCents;
        bool bColorChanged;
        std::vector<RECT> rects;
    };
    const Step STEPS[] = {{0, 0, false, {}},
                          {4, 0, false, {NOTE}},
                          {4, 0, false, {}},
                          {4, -12, false, {NUMERALS_AREA, NEEDLE_AREA}},
                          {4, -12, true, {NUMERALS_AREA, NEEDLE_AREA}},
                          {6, 44, false, {NOTE, NUMERALS_AREA, NEEDLE_AREA}}};
    for (const Step& step : STEPS) {
        m_dial.SetNote(step.nSemitone);
        m_dial.SetCents(step.nCents);
        EXPECT_TRUE(
            TouchesExactly([&](CDC* pDc) { m_dial.Draw(pDc, false, step.bColorChanged); }, step.rects));
    }
    EXPECT_TRUE(TouchesExactly([this](CDC* pDc) { m_dial.Draw(pDc, true, false); }, {DIAL}));
}

TEST_F(FineDialTest, ShowsWhatRemainsWithoutAFile) {
    std::filesystem::remove("NumBev.bmp");
    CFineDial dial;
    EXPECT_FALSE(dial.Create(&m_wnd));
    dial.SetDigitColor(WHITE);
    dial.SetColor(NEEDLE);
    m_wnd.Draw([&](CDC* pDc) { dial.Draw(pDc, true, false); });
    EXPECT_EQ(m_wnd.GetPixel(DIAL.left + 22, DIAL.top + 20), GlyphColor('C'));
    EXPECT_EQ(m_wnd.GetPixel(DIAL.left + 118, DIAL.top + 150), NEEDLE);
}

}  // namespace
