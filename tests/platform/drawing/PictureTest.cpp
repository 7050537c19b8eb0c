#include "platform/drawing/MemoryDc.h"
#include "platform/drawing/Pen.h"
#include "platform/drawing/Picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <span>

namespace {

constexpr int CX = 60;
constexpr int CY = 40;

bool IsCovered(const CPicture::Dirty& dirty, int x, int y) {
    const auto rects = std::span(dirty.rects).first(dirty.nCount);
    return std::any_of(rects.begin(), rects.end(), [&](const RECT& rc) { return PtInRect(rc, {x, y}); });
}

void DrawSomething(CDC& dc, const CDC& dcOther, std::mt19937& random) {
    const int x = RandomInt(random, -10, CX + 5);
    const int y = RandomInt(random, -10, CY + 5);
    const int cx = RandomInt(random, -2, 20);
    const int cy = RandomInt(random, -2, 20);
    const int xSrc = RandomInt(random, -5, 20);
    const int ySrc = RandomInt(random, -5, 20);
    const COLORREF clr = 0xAB000000 | RandomColor(random);
    const DWORD dwRop = std::array{SRCCOPY, SRCAND, SRCINVERT, DSNA}[random() % 4];
    CPen pen(PS_SOLID, RandomInt(random, 1, 6), clr);
    const std::function<void()> draws[] = {
        [&] { dc.FillSolidRect(x, y, cx, cy, clr); },
        [&] { dc.PatBlt(x, y, cx, cy, PATCOPY); },
        [&] { dc.BitBlt(x, y, cx, cy, &dcOther, xSrc, ySrc, dwRop); },
        [&] { dc.BitBlt(x, y, cx, cy, &dc, xSrc, ySrc, SRCCOPY); },
        [&] { dc.SetPixel(x, y, clr); },
        [&] {
            dc.DrawEdge({x, y, x + cx, y + cy}, EDGE_SUNKEN, BF_RECT);
        },
        [&] {
            CPen* const pPrevious = dc.SelectObject(&pen);
            dc.MoveTo(x, y);
            dc.LineTo(xSrc, ySrc);
            dc.SelectObject(pPrevious);
        },
    };
    draws[random() % std::size(draws)]();
}

// And a pixel is ready to be shown whatever drew it: its top byte is always full.
TEST(Picture, EveryChangedPixelIsMarkedAndOpaque) {
    std::mt19937 random = Random(7);
    CPicture picture;
    ASSERT_TRUE(picture.Create(CX, CY, 0xC0C0C0));
    picture.TakeDirty();
    CDC dc;
    dc.AttachPicture(&picture);
    MemoryDc other(20, 20);
    for (int nRound = 0; nRound < 3000; ++nRound) {
        Scribble(other.dc, {4, 20}, random);
        const std::vector<COLORREF> before = ReadAll(dc, {CX, CY});
        for (int nDraws = RandomInt(random, 1, 40); nDraws > 0; --nDraws) {
            DrawSomething(dc, other.dc, random);
        }
        const CPicture::Dirty dirty = picture.TakeDirty();
        ASSERT_EQ(picture.TakeDirty().nCount, 0U);
        for (std::size_t i = 0; i < dirty.nCount; ++i) {
            const RECT& rc = dirty.rects[i];
            ASSERT_TRUE(!rc.IsEmpty() && rc.left >= 0 && rc.top >= 0 && rc.right <= CX && rc.bottom <= CY);
        }
        for (int y = 0; y < CY; ++y) {
            for (int x = 0; x < CX; ++x) {
                ASSERT_TRUE(before[IndexOf(x, y, CX)] == dc.GetPixel(x, y) || IsCovered(dirty, x, y))
                    << x << "," << y;
                ASSERT_EQ(picture.GetSurface().GetRow(y)[x] >> 24, 0xFFU);
            }
        }
    }
}

TEST(Picture, MarksNoMoreThanWasDrawn) {
    CPicture picture;
    ASSERT_TRUE(picture.Create(CX, CY, 0));
    CPicture::Dirty dirty = picture.TakeDirty();
    ASSERT_EQ(dirty.nCount, 1U) << "a new picture is to be shown whole";
    EXPECT_EQ(dirty.rects[0], (RECT{0, 0, CX, CY}));

    CDC dc;
    dc.AttachPicture(&picture);
    MemoryDc other(10, 10);
    dc.BitBlt(-3, 5, 100, 4, &other.dc, 1, 0, SRCCOPY);
    dc.FillSolidRect(50, 30, 30, 5, 0xFF);
    dc.FillSolidRect(200, 30, 30, 5, 0xFF);
    dc.GetPixel(0, 0);
    other.dc.BitBlt(0, 0, 10, 10, &dc, 0, 0, SRCCOPY);
    dirty = picture.TakeDirty();
    ASSERT_EQ(dirty.nCount, 2U);
    EXPECT_EQ(dirty.rects[0], (RECT{0, 5, 6, 9}));
    EXPECT_EQ(dirty.rects[1], (RECT{50, 30, 60, 35}));

    for (int x = 0; x < 30; ++x) {
        dc.SetPixel(x, 3, 0xFF);
    }
    EXPECT_EQ(picture.TakeDirty().nCount, 1U) << "neighbours become one";
    // What lies apart stays apart as long as there is room.
    for (int x = 0; x < 30; ++x) {
        dc.SetPixel(x, 3, 0xFF);
        dc.SetPixel(2 * x, 20, 0xFF);
    }
    dirty = picture.TakeDirty();
    EXPECT_EQ(dirty.nCount, CPicture::s_nMaxDirty);
    EXPECT_FALSE(IsCovered(dirty, 0, 10)) << "merging takes what lies near";
}

TEST(Picture, WithoutSizeIsHarmlessAndAContextFollowsItsNewSize) {
    CPicture picture;
    CDC dc;
    dc.AttachPicture(&picture);
    dc.FillSolidRect(0, 0, 10, 10, 0xFF);
    dc.SetPixel(0, 0, 0xFF);
    dc.LineTo(5, 5);
    EXPECT_EQ(picture.TakeDirty().nCount, 0U);
    EXPECT_FALSE(picture.Create(0, 5, 0));
    EXPECT_TRUE(picture.Create(3, 5, 0x00FF00));
    EXPECT_EQ(dc.GetPixel(2, 4), 0x00FF00U);
}

}  // namespace
