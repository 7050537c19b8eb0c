#include "widgets/FineDial.h"
#include "widgets/NeedleGeometry.h"
#include "widgets/PictureDirectory.h"
#include "widgets/TestArtwork.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <utility>

namespace {

using namespace TestArtwork;

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr COLORREF NEEDLE = 0x2040A0;
constexpr RECT DIAL = {250, 43, 490, 300};

// The needle's ends as measured from the pivot (120, 270) on circles of radius 182 and 30, 0.6 degrees a
// cent.
struct NeedleRow {
    int nCents;
    POINT ptTip;
    POINT ptBase;
    int nStripX;
};
constexpr NeedleRow NEEDLES[] = {
    {0, {120, 89}, {120, 241}, 110},   {1, {121, 89}, {120, 241}, 101},   {-1, {119, 89}, {120, 241}, 109},
    {10, {139, 89}, {123, 241}, 119},  {-10, {101, 89}, {117, 241}, 91},  {25, {167, 95}, {127, 242}, 147},
    {-25, {73, 95}, {113, 242}, 63},   {50, {211, 113}, {135, 245}, 191}, {-50, {30, 113}, {106, 245}, 20},
    {46, {204, 109}, {133, 244}, 184}, {-38, {50, 103}, {109, 243}, 40},  {-19, {85, 92}, {115, 241}, 75},
};

// A pixel belongs to a line 5 wide if its centre lies within 2.5 of the line.
bool IsOnNeedle(const NeedleRow& row, int x, int y) {
    const double dx = row.ptTip.x - row.ptBase.x;
    const double dy = row.ptTip.y - row.ptBase.y;
    const double px = x - row.ptBase.x;
    const double py = y - row.ptBase.y;
    const double dAlong = std::clamp((px * dx + py * dy) / (dx * dx + dy * dy), 0.0, 1.0);
    const double ex = px - dAlong * dx;
    const double ey = py - dAlong * dy;
    return ex * ex + ey * ey <= 6.25;
}

class FineDialTest : public testing::Test {
protected:
    FineDialTest() {
        Write(Glyphs::Boxes);
        EXPECT_TRUE(m_dial.Create(&m_wnd));
        m_dial.SetDigitColor(WHITE);
        m_dial.SetColor(NEEDLE);
        m_dial.SetNote(0);
        m_dial.SetCents(0);
    }

    void DrawFull() {
        m_wnd.Draw([this](CDC* pDc) { m_dial.Draw(pDc, true, false); });
    }
    void Frame(CDC* pDc, int nSemitone, int nCents, bool bColorChanged = false) {
        m_dial.SetCents(nCents);
        m_dial.SetNote(nSemitone);
        m_dial.Draw(pDc, false, bColorChanged);
    }

    COLORREF At(int x, int y) const { return m_wnd.GetPixel(DIAL.left + x, DIAL.top + y); }

    CPictureDirectory m_directory;
    CStageWnd m_wnd;
    CFineDial m_dial;
};

TEST(NeedleGeometry, EndsAndStripOfTheReferencePoints) {
    for (const NeedleRow& row : NEEDLES) {
        const NeedleGeometry needle = GetNeedleGeometry(row.nCents);
        EXPECT_EQ(std::pair(needle.ptTip.x, needle.ptTip.y), std::pair(row.ptTip.x, row.ptTip.y))
            << row.nCents;
        EXPECT_EQ(std::pair(needle.ptBase.x, needle.ptBase.y), std::pair(row.ptBase.x, row.ptBase.y))
            << row.nCents;
        EXPECT_EQ(needle.nStripX, row.nStripX) << row.nCents;
    }
}

// Columns of the dial in which a glyph stands, the last one excluded.
struct Glyph {
    int nLeft;
    int nEnd;
    COLORREF clr;
};
constexpr Glyph Letter(int nLeft, int nEnd, int k) {
    return {nLeft, nEnd, LetterColor(k)};
}
constexpr Glyph Digit(int nLeft, int nEnd, int k) {
    return {nLeft, nEnd, DigitColor(k)};
}
constexpr Glyph PLUS_SIGN = Digit(119, 141, PLUS);
constexpr Glyph MINUS_SIGN = Digit(125, 138, MINUS);

// Each semitone with a needle, in their order. Letters: 0 A ... 6 G, 7 sharp, 8 flat. The ones begin at 168,
// over the last column of the widest tens.
const std::vector<Glyph> ROWS_OF_GLYPHS[] = {
    {Letter(22, 52, 2), PLUS_SIGN, Digit(143, 168, 0), Digit(168, 194, 0)},
    {Letter(22, 52, 2), Letter(52, 77, 7), PLUS_SIGN, Digit(143, 168, 0), Digit(168, 192, 1)},
    {Letter(22, 51, 3), MINUS_SIGN, Digit(143, 168, 0), Digit(168, 192, 1)},
    {Letter(22, 49, 4), Letter(49, 73, 8), PLUS_SIGN, Digit(143, 167, 1), Digit(168, 194, 0)},
    {Letter(22, 49, 4), MINUS_SIGN, Digit(143, 167, 1), Digit(168, 194, 0)},
    {Letter(22, 46, 5), PLUS_SIGN, Digit(143, 168, 2), Digit(168, 193, 5)},
    {Letter(22, 46, 5), Letter(46, 71, 7), MINUS_SIGN, Digit(143, 168, 2), Digit(168, 193, 5)},
    {Letter(22, 52, 6), PLUS_SIGN, Digit(143, 168, 5), Digit(168, 194, 0)},
    {Letter(22, 52, 6), Letter(52, 77, 7), MINUS_SIGN, Digit(143, 168, 5), Digit(168, 194, 0)},
    {Letter(22, 54, 0), PLUS_SIGN, Digit(143, 168, 4), Digit(168, 193, 6)},
    {Letter(22, 50, 1), Letter(50, 74, 8), MINUS_SIGN, Digit(143, 167, 3), Digit(168, 193, 8)},
    {Letter(22, 50, 1), MINUS_SIGN, Digit(143, 167, 1), Digit(168, 193, 9)},
};

COLORREF GlyphAt(const std::vector<Glyph>& glyphs, int x) {
    for (const Glyph& glyph : glyphs) {
        if (x >= glyph.nLeft && x < glyph.nEnd) {
            return glyph.clr;
        }
    }
    return x >= 195 && x < 231 ? DigitColor(PERCENT) : WHITE;
}

TEST_F(FineDialTest, WholePictureOfEachState) {
    for (int i = 0; i < 12; ++i) {
        SCOPED_TRACE(i);
        const NeedleRow& row = NEEDLES[i];
        m_dial.SetNote(i);
        m_dial.SetCents(row.nCents);
        DrawFull();
        EXPECT_TRUE(PixelsAre(m_wnd, DIAL, [&](int xWindow, int yWindow) -> COLORREF {
            const int x = xWindow - DIAL.left;
            const int y = yWindow - DIAL.top;
            if (const COLORREF clrEdge = SunkenEdgeAt(DIAL, xWindow, yWindow); clrEdge != CLR_INVALID) {
                return clrEdge;
            }
            if (IsHub(x - 91, y - 232)) {
                return HUB_COLOR;
            }
            if (IsOnNeedle(row, x, y)) {
                return NEEDLE;
            }
            if (y >= 20 && y < 47) {
                return GlyphAt(ROWS_OF_GLYPHS[i], x);
            }
            return y >= 59 && y < 128 ? LabelAt(x - 2, y - 59) : WHITE;
        }));
    }
}

TEST_F(FineDialTest, HasNoNameForAnyOtherSemitone) {
    for (const int nSemitone : {12, -1}) {
        m_dial.SetNote(nSemitone);
        DrawFull();
        EXPECT_TRUE(PixelsAre(m_wnd, {DIAL.left + 2, DIAL.top + 20, DIAL.left + 119, DIAL.top + 47},
                              [](int, int) { return WHITE; }));
    }
}

// Beyond what a reading has, the number stays at two digits.
TEST_F(FineDialTest, TheNumberEndsAt99) {
    struct Number {
        int nCents;
        std::vector<Glyph> glyphs;
    };
    const Glyph nine = Digit(143, 193, 9);  // twice
    const Number NUMBERS[] = {{-67, {MINUS_SIGN, Digit(143, 168, 6), Digit(168, 193, 7)}},
                              {72, {PLUS_SIGN, Digit(143, 168, 7), Digit(168, 193, 2)}},
                              {83, {PLUS_SIGN, Digit(143, 168, 8), Digit(168, 192, 3)}},
                              {100, {PLUS_SIGN, nine}},
                              {INT_MIN, {MINUS_SIGN, nine}},
                              {INT_MAX, {PLUS_SIGN, nine}}};
    for (const Number& number : NUMBERS) {
        SCOPED_TRACE(number.nCents);
        m_dial.SetCents(number.nCents);
        DrawFull();
        EXPECT_TRUE(PixelsAre(m_wnd, {DIAL.left + 80, DIAL.top + 20, DIAL.right - 2, DIAL.top + 47},
                              [&](int x, int) { return GlyphAt(number.glyphs, x - DIAL.left); }));
    }
}

// From one reading to the next: what goes to the window.
TEST_F(FineDialTest, AFrameSendsWhatChanged) {
    constexpr RECT NOTE = {270, 63, 330, 91};
    constexpr RECT NUMERALS = {369, 63, 469, 91};
    constexpr RECT NEEDLE_AREA = {252, 101, 488, 300};
    DrawFull();
    struct Step {
        int nSemitone;
        int nCents;
        bool bColorChanged;
        std::vector<RECT> rects;
    };
    const Step STEPS[] = {{0, 0, false, {}},
                          {4, 0, false, {NOTE}},
                          {4, 0, false, {}},
                          {4, -12, false, {NUMERALS, NEEDLE_AREA}},
                          {4, -12, true, {NUMERALS, NEEDLE_AREA}},
                          {6, 44, false, {NOTE, NUMERALS, NEEDLE_AREA}}};
    for (const Step& step : STEPS) {
        EXPECT_TRUE(TouchesExactly(
            [&](CDC* pDc) { Frame(pDc, step.nSemitone, step.nCents, step.bColorChanged); }, step.rects));
    }
    EXPECT_TRUE(TouchesExactly([this](CDC* pDc) { m_dial.Draw(pDc, true, false); }, {DIAL}));
}

TEST_F(FineDialTest, TextTakesItsColorWithTheNextFullDraw) {
    DrawFull();
    m_dial.SetDigitColor(0x0000FF);  // red: with a bevel of v, 255 - trunc(255 x (1 - v / 256)) in red only
    m_wnd.Draw([this](CDC* pDc) { Frame(pDc, 0, 0); });
    EXPECT_EQ(At(22, 33), LetterColor(2));
    DrawFull();
    EXPECT_EQ(At(22, 33), 0x000030U);
    EXPECT_EQ(At(195, 33), 0x0000B1U);
}

TEST_F(FineDialTest, ShowsWhatRemainsWithoutItsFiles) {
    for (const char* szMissing : {"NumBev.bmp", "Label.bmp", "Circle.bmp"}) {
        SCOPED_TRACE(szMissing);
        const CPictureDirectory directory;
        Write(Glyphs::Boxes);
        std::filesystem::remove(szMissing);
        CFineDial dial;
        EXPECT_FALSE(dial.Create(&m_wnd));
        dial.SetDigitColor(WHITE);
        dial.SetColor(NEEDLE);
        m_wnd.Draw([&](CDC* pDc) { dial.Draw(pDc, true, false); });
        EXPECT_EQ(At(22, 20), LetterColor(2));
        EXPECT_EQ(At(118, 150), NEEDLE);
        dial.SetCents(-60);
        m_wnd.Draw([&](CDC* pDc) { dial.Draw(pDc, false, false); });
        EXPECT_EQ(At(118, 150), WHITE);
    }
}

}  // namespace
