#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"
#include "platform/drawing/MemoryDc.h"
#include "platform/drawing/Pen.h"
#include "platform/drawing/SysColors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <map>
#include <string>

namespace {

COLORREF Combine(DWORD dwRop, COLORREF dst, COLORREF src) {
    switch (dwRop) {
        case SRCAND:
            return dst & src;
        case SRCINVERT:
            return dst ^ src;
        case 0x220326:
            return dst & ~src & 0xFFFFFF;
        default:
            return src;
    }
}

// A memory context whose text and background colour are known.
struct ColoredDc : MemoryDc {
    explicit ColoredDc(std::mt19937& random)
        : MemoryDc(RandomInt(random, 1, 12), RandomInt(random, 1, 9), random() % 3 == 0),
          clrText(RandomColor(random)),
          clrBack(RandomColor(random)) {
        Scribble(dc, bitmap.GetSize(), random);
        dc.SetTextColor(clrText);
        dc.SetBkColor(clrBack);
    }

    COLORREF clrText;
    COLORREF clrBack;
};

// What BitBlt must do, one pixel at a time, from copies of both surfaces as they were.
std::vector<COLORREF> Expect(const ColoredDc& dst, const RECT& rc, const ColoredDc& src, POINT ptSrc,
                             DWORD dwRop) {
    const SIZE sizeDst = dst.bitmap.GetSize();
    const SIZE sizeSrc = src.bitmap.GetSize();
    const bool bToBit = dst.bitmap.GetSurface().IsMonochrome();
    const bool bFromBit = src.bitmap.GetSurface().IsMonochrome();
    std::vector<COLORREF> result = ReadAll(dst.dc, sizeDst);
    for (int i = 0; i < rc.Height(); ++i) {
        for (int j = 0; j < rc.Width(); ++j) {
            const POINT from{ptSrc.x + j, ptSrc.y + i};
            const POINT to{rc.left + j, rc.top + i};
            if (!PtInRect({0, 0, sizeSrc.cx, sizeSrc.cy}, from) ||
                !PtInRect({0, 0, sizeDst.cx, sizeDst.cy}, to)) {
                continue;
            }
            COLORREF pixel = src.dc.GetPixel(from.x, from.y);
            if (bToBit && !bFromBit) {
                pixel = pixel == src.clrBack ? 0xFFFFFF : 0;
            } else if (bFromBit && !bToBit) {
                pixel = pixel != 0 ? dst.clrBack : dst.clrText;
            }
            COLORREF& out = result[IndexOf(to.x, to.y, sizeDst.cx)];
            out = Combine(dwRop, out, pixel);
        }
    }
    return result;
}

TEST(BitBlt, DoesWhatEachPixelSaysOnAllSurfacesAndPlaces) {
    std::mt19937 random = Random(20261122);
    for (int nRound = 0; nRound < 20000; ++nRound) {
        ColoredDc first(random);
        ColoredDc second(random);
        // Every second round copies a surface onto itself, mostly overlapping.
        ColoredDc& src = nRound % 2 == 0 ? second : first;
        const int x = RandomInt(random, -6, 13);
        const int y = RandomInt(random, -6, 10);
        const RECT rc{x, y, x + RandomInt(random, -3, 14), y + RandomInt(random, -3, 12)};
        const POINT ptSrc{RandomInt(random, -6, 13), RandomInt(random, -6, 10)};
        const DWORD dwRop = std::array{SRCCOPY, SRCAND, SRCINVERT, DSNA}[random() % 4];

        const std::vector<COLORREF> expected = Expect(first, rc, src, ptSrc, dwRop);
        ASSERT_TRUE(first.dc.BitBlt(x, y, rc.Width(), rc.Height(), &src.dc, ptSrc.x, ptSrc.y, dwRop));
        ASSERT_EQ(ReadAll(first.dc, first.bitmap.GetSize()), expected) << "round " << nRound;
    }
}

TEST(BitBlt, StandsAbsurdPlacesAndSizes) {
    MemoryDc dst(4, 3);
    MemoryDc src(4, 3);
    src.dc.FillSolidRect(0, 0, 4, 3, 0x010203);
    for (const int n : {INT_MIN, INT_MIN + 1, -5, INT_MAX - 1, INT_MAX}) {
        dst.dc.BitBlt(n, 0, 4, 3, &src.dc, 0, 0, SRCCOPY);
        dst.dc.BitBlt(0, 0, n < 0 ? n : 0, 3, &src.dc, 0, 0, SRCCOPY);
        dst.dc.FillSolidRect(n, n, 2, INT_MAX, 0);
        dst.dc.PatBlt(5, 5, n, n, PATCOPY);
        dst.dc.SetPixel(n, 0, 0x010203);
        EXPECT_EQ(dst.dc.GetPixel(0, n), CLR_INVALID);
    }
    dst.dc.BitBlt(INT_MIN, INT_MIN, INT_MAX, INT_MAX, &src.dc, INT_MIN, INT_MIN, SRCCOPY);
    EXPECT_EQ(ReadAll(dst.dc, {4, 3}), ReadAll(MemoryDc(4, 3).dc, {4, 3}));
    dst.dc.BitBlt(0, 0, INT_MAX, INT_MAX, &src.dc, 0, 0, SRCCOPY);
    EXPECT_EQ(ReadAll(dst.dc, {4, 3}), ReadAll(src.dc, {4, 3}));
}

TEST(BitBlt, RefusesWhatItDoesNotKnow) {
    MemoryDc dst(2, 2);
    MemoryDc src(2, 2);
    src.dc.FillSolidRect(0, 0, 2, 2, 0xFFFFFF);
    CDC dcBare;
    EXPECT_FALSE(dst.dc.BitBlt(0, 0, 2, 2, &src.dc, 0, 0, 0x12345678));
    EXPECT_FALSE(dst.dc.PatBlt(0, 0, 2, 2, SRCCOPY));
    EXPECT_FALSE(dst.dc.BitBlt(0, 0, 2, 2, nullptr, 0, 0, SRCCOPY));
    EXPECT_FALSE(dst.dc.BitBlt(0, 0, 2, 2, &dcBare, 0, 0, SRCCOPY));
    EXPECT_FALSE(dcBare.BitBlt(0, 0, 2, 2, &src.dc, 0, 0, SRCCOPY));
    src.bitmap.DeleteObject();
    EXPECT_EQ(src.dc.GetPixel(0, 0), CLR_INVALID) << "a deleted bitmap that is still selected has no pixels";
    dst.dc.BitBlt(0, 0, 2, 2, &src.dc, 0, 0, SRCCOPY);
    EXPECT_EQ(dst.dc.GetPixel(1, 1), 0U);
}

TEST(Fill, PaintsItsRectangleAndKeepsTheBackgroundColour) {
    constexpr COLORREF a = 0x112233;
    constexpr COLORREF b = 0x445566;
    constexpr COLORREF w = 0xFFFFFF;
    MemoryDc mem(5, 4);
    mem.dc.FillSolidRect(1, 1, 2, 2, a);
    EXPECT_EQ(mem.dc.SetBkColor(0), a);
    mem.dc.FillSolidRect({4, -3, 9, 2}, b);
    EXPECT_EQ(mem.dc.SetBkColor(0), b);
    EXPECT_TRUE(mem.dc.PatBlt(0, 3, 2, 9, PATCOPY)) << "a new context has a white brush";
    EXPECT_TRUE(mem.dc.SelectStockObject(BLACK_BRUSH));
    EXPECT_TRUE(mem.dc.PatBlt(-1, 3, 2, 1, PATCOPY));
    for (const SIZE size : {SIZE{0, 3}, SIZE{3, 0}, SIZE{-2, 3}, SIZE{3, -2}}) {
        mem.dc.FillSolidRect(2, 2, size.cx, size.cy, 0x778899);
        mem.dc.FillSolidRect({2, 2, 2 + size.cx, 2 + size.cy}, 0x778899);
        mem.dc.PatBlt(2, 2, size.cx, size.cy, PATCOPY);
    }
    EXPECT_EQ(ReadAll(mem.dc, {5, 4}),
              (std::vector<COLORREF>{0, 0, 0, 0, b, 0, a, a, 0, b, 0, a, a, 0, 0, 0, w, 0, 0, 0}));
}

TEST(DrawEdge, IsTwoRingsInTheColoursOfTheDesktop) {
    const COLORREF clrShadow = GetSysColor(COLOR_BTNSHADOW);
    SetSysColor(COLOR_BTNSHADOW, 0x111111);
    MemoryDc mem(9, 7);
    mem.dc.FillSolidRect(0, 0, 9, 7, 0x777777);
    EXPECT_TRUE(mem.dc.DrawEdge({1, 1, 8, 6}, EDGE_SUNKEN, BF_RECT));
    SetSysColor(COLOR_BTNSHADOW, clrShadow);

    // s shadow, h highlight, d dark shadow, l light; the lower left and upper right corners are light.
    const std::map<COLORREF, char> letters{
        {0x777777, '.'}, {0x111111, 's'}, {0xFFFFFF, 'h'}, {0x000000, 'd'}, {0xDFDFDF, 'l'}};
    std::string drawn;
    for (const COLORREF clr : ReadAll(mem.dc, {9, 7})) {
        drawn += letters.contains(clr) ? letters.at(clr) : '?';
    }
    EXPECT_EQ(drawn,
              "........."
              ".ssssssh."
              ".sddddlh."
              ".sd...lh."
              ".slllllh."
              ".hhhhhhh."
              ".........");
}

TEST(LineTo, CoversThePixelsWithinHalfItsWidthAndNoOther) {
    constexpr COLORREF clrLine = 0x0000A0;
    std::mt19937 random = Random(5);
    for (int nRound = 0; nRound < 3000; ++nRound) {
        const SIZE size{RandomInt(random, 1, 40), RandomInt(random, 1, 40)};
        MemoryDc mem(size.cx, size.cy);
        const POINT ptFrom{RandomInt(random, -12, 52), RandomInt(random, -12, 52)};
        // Upright, level and single points as often as slanted lines.
        const POINT ptTo{random() % 3 == 0 ? ptFrom.x : RandomInt(random, -12, 52),
                         random() % 3 == 0 ? ptFrom.y : RandomInt(random, -12, 52)};
        const double dx = ptTo.x - ptFrom.x;
        const double dy = ptTo.y - ptFrom.y;
        const double dLength2 = std::max(dx * dx + dy * dy, 1.0);
        CPen pen(PS_SOLID, RandomInt(random, 1, 7), clrLine);
        mem.dc.SelectObject(&pen);
        mem.dc.MoveTo(ptFrom.x, ptFrom.y);
        mem.dc.LineTo(ptTo.x, ptTo.y);
        for (int y = 0; y < size.cy; ++y) {
            for (int x = 0; x < size.cx; ++x) {
                const double dFoot =
                    std::clamp(((x - ptFrom.x) * dx + (y - ptFrom.y) * dy) / dLength2, 0.0, 1.0);
                const bool bInside = std::hypot(x - ptFrom.x - dFoot * dx, y - ptFrom.y - dFoot * dy) <=
                                     pen.GetWidth() / 2.0 + 1e-9;
                ASSERT_EQ(mem.dc.GetPixel(x, y), bInside ? clrLine : 0)
                    << "round " << nRound << " pixel " << x << "," << y << " width " << pen.GetWidth();
            }
        }
    }
}

TEST(LineTo, MovesOnAndStandsAbsurdPlaces) {
    MemoryDc mem(8, 8);
    mem.dc.SelectStockObject(WHITE_PEN);
    mem.dc.MoveTo(1, 1);
    mem.dc.LineTo(4, 1);
    mem.dc.LineTo(4, 5);
    for (const POINT pt : {POINT{1, 1}, {4, 3}, {4, 5}}) {
        EXPECT_EQ(mem.dc.GetPixel(pt.x, pt.y), 0xFFFFFFU) << pt.x << "," << pt.y;
    }
    EXPECT_EQ(mem.dc.GetPixel(4, 0), 0U);
    mem.dc.LineTo(INT_MAX, INT_MIN);
    mem.dc.LineTo(INT_MIN, INT_MAX);
    CPen pen(PS_SOLID, 255, 0x00FF00);
    mem.dc.SelectObject(&pen);
    mem.dc.MoveTo(-1000000, -1000000);
    mem.dc.LineTo(1000000, 1000000);
    EXPECT_EQ(mem.dc.GetPixel(7, 0), 0x00FF00U);
}

}  // namespace
