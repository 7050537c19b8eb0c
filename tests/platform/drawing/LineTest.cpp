#include "platform/drawing/Dc.h"
#include "platform/drawing/MemoryDc.h"
#include "platform/drawing/Pen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

namespace {

constexpr COLORREF g_clrLine = 0x0000A0;

void Line(CDC& dc, POINT ptFrom, POINT ptTo, int nWidth, COLORREF clr) {
    CPen pen(PS_SOLID, nWidth, clr);
    CPen* const pPrevious = dc.SelectObject(&pen);
    dc.MoveTo(ptFrom.x, ptFrom.y);
    dc.LineTo(ptTo.x, ptTo.y);
    dc.SelectObject(pPrevious);
}

double DistanceToSegment(POINT pt, POINT ptFrom, POINT ptTo) {
    const double dx = ptTo.x - ptFrom.x;
    const double dy = ptTo.y - ptFrom.y;
    const double fLength2 = dx * dx + dy * dy;
    const double fAlong =
        fLength2 == 0.0 ? 0.0
                        : std::clamp(((pt.x - ptFrom.x) * dx + (pt.y - ptFrom.y) * dy) / fLength2, 0.0, 1.0);
    return std::hypot(pt.x - ptFrom.x - fAlong * dx, pt.y - ptFrom.y - fAlong * dy);
}

TEST(LineTo, CoversThePixelsWithinHalfItsWidthAndNoOther) {
    std::mt19937 random = Random(5);
    for (int nRound = 0; nRound < 3000; ++nRound) {
        const SIZE size{RandomInt(random, 1, 40), RandomInt(random, 1, 40)};
        MemoryDc mem(size.cx, size.cy);
        const POINT ptFrom{RandomInt(random, -12, 52), RandomInt(random, -12, 52)};
        // Upright, level and single points as often as slanted lines.
        const POINT ptTo{random() % 3 == 0 ? ptFrom.x : RandomInt(random, -12, 52),
                         random() % 3 == 0 ? ptFrom.y : RandomInt(random, -12, 52)};
        const int nWidth = RandomInt(random, 1, 7);
        Line(mem.dc, ptFrom, ptTo, nWidth, g_clrLine);
        for (int y = 0; y < size.cy; ++y) {
            for (int x = 0; x < size.cx; ++x) {
                const bool bInside = DistanceToSegment({x, y}, ptFrom, ptTo) <= nWidth / 2.0 + 1e-9;
                ASSERT_EQ(mem.dc.GetPixel(x, y), bInside ? g_clrLine : 0)
                    << "pixel " << x << "," << y << " of " << ptFrom.x << "," << ptFrom.y << " to " << ptTo.x
                    << "," << ptTo.y << " width " << nWidth;
            }
        }
    }
}

TEST(LineTo, MovesOnAndStandsAbsurdPlaces) {
    MemoryDc mem(8, 8);
    CPen pen(PS_SOLID, 1, 0xFF);
    mem.dc.SelectObject(&pen);
    mem.dc.MoveTo(1, 1);
    mem.dc.LineTo(4, 1);
    mem.dc.LineTo(4, 5);
    EXPECT_EQ(mem.dc.GetPixel(1, 1), 0xFFU);
    EXPECT_EQ(mem.dc.GetPixel(4, 3), 0xFFU) << "the second line starts where the first ended";
    EXPECT_EQ(mem.dc.GetPixel(4, 5), 0xFFU);
    mem.dc.LineTo(INT_MAX, INT_MIN);
    mem.dc.LineTo(INT_MIN, INT_MAX);
    Line(mem.dc, {-1000000, -1000000}, {1000000, 1000000}, 255, 0x00FF00);
    EXPECT_EQ(mem.dc.GetPixel(7, 0), 0x00FF00U);
}

}  // namespace
