// The pictures that the widgets are made of: plain, with a transparent colour, and rendered from two files.

#include "platform/drawing/MemoryDc.h"
#include "support/ScratchDirectory.h"
#include "widgets/BitmapLayer.h"
#include "widgets/MaskedSprite.h"
#include "widgets/OpacityBitmap.h"
#include "widgets/TintedBitmap.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

namespace {

constexpr int SIDE = 256;
constexpr RECT ALL{0, 0, SIDE, SIDE};
constexpr COLORREF WHITE = 0xFFFFFF;
constexpr COLORREF GROUND = 0x405060;

class Pictures : public testing::Test {
protected:
    Pictures() { Clear(); }

    void Clear() { m_mem.dc.FillSolidRect(0, 0, SIDE, SIDE, GROUND); }
    CString File(const CString& strName, int cx, int cy, const PixelColor& fnPixel) const {
        WriteBitmap(m_directory.Path(strName), cx, cy, fnPixel);
        return m_directory.Path(strName);
    }
    // Blue is given; the other channels are noise that must not count.
    CString BlueFile(const CString& strName, int (*blue)(int x, int y)) const {
        return File(strName, SIDE, SIDE, [blue](int x, int y) {
            return MakeColor((x * 77 + y) % 256, 255 - y * 3 % 256, blue(x, y));
        });
    }
    void ExpectPixels(const PixelColor& fnExpected) const {
        for (int y = 0; y < SIDE; ++y) {
            for (int x = 0; x < SIDE; ++x) {
                ASSERT_EQ(m_mem.dc.GetPixel(x, y), fnExpected(x, y)) << x << ", " << y;
            }
        }
    }

    CScratchDirectory m_directory;
    CStageWnd m_wnd;
    MemoryDc m_mem{SIDE, SIDE};
    CBitmapLayer m_layer;
    CMaskedSprite m_sprite;
    COpacityBitmap m_logo;
    CTintedBitmap m_strip;
};

TEST_F(Pictures, ALayerDrawsItselfOrAPartWhichEndsWithThePicture) {
    const auto layerAt = [](int x, int y) { return MakeColor(x + 1, y + 1, 0x33); };
    ASSERT_TRUE(m_layer.Load(File("layer.bmp", 7, 5, layerAt), &m_wnd));
    EXPECT_EQ(m_layer.GetHeight(), 5);
    m_layer.Draw(&m_mem.dc, 252, -2);
    ExpectPixels([&](int x, int y) { return x >= 252 && y < 3 ? layerAt(x - 252, y + 2) : GROUND; });
    for (const RECT& rc : {RECT{2, 1, 5, 3}, RECT{-3, 2, 27, 252}}) {
        Clear();
        m_layer.DrawPart(&m_mem.dc, 6, 4, rc.left, rc.top, rc.Width(), rc.Height());
        ExpectPixels([&](int x, int y) {
            const POINT pt{x - 6 + rc.left, y - 4 + rc.top};
            return PtInRect(rc, pt) && PtInRect({0, 0, 7, 5}, pt) ? layerAt(pt.x, pt.y) : GROUND;
        });
    }
}

TEST_F(Pictures, ASpriteShowsWhatLiesUnderIt) {
    // Colours of all kinds, black and nearly white among them.
    static constexpr COLORREF COLORS[] = {WHITE, 0x000000, 0xFEFFFF, 0x563412, 0x0000FF};
    const auto spriteAt = [](int x, int y) { return COLORS[(x + 2 * y) % 5]; };
    const CString strFile = File("sprite.bmp", 9, 6, spriteAt);
    std::mt19937 random = Random(17);
    for (const COLORREF clrTransparent : {0x563412U, 0x000000U, 0xFEFFFFU, 0x030201U, WHITE}) {
        CMaskedSprite sprite;
        ASSERT_TRUE(sprite.Load(strFile, &m_wnd, clrTransparent));
        for (const POINT pt : {POINT{100, 90}, {-4, 20}, {250, -3}, {30, 253}, {260, 0}}) {
            Scribble(m_mem.dc, {SIDE, SIDE}, random);
            const std::vector<COLORREF> before = ReadAll(m_mem.dc, {SIDE, SIDE});
            // Which must not count.
            m_mem.dc.SetTextColor(0x123456);
            m_mem.dc.SetBkColor(0x654321);
            sprite.Draw(&m_mem.dc, pt.x, pt.y);
            ExpectPixels([&](int x, int y) {
                const bool bInside = PtInRect({pt.x, pt.y, pt.x + 9, pt.y + 6}, {x, y});
                const COLORREF clr = bInside ? spriteAt(x - pt.x, y - pt.y) : clrTransparent;
                return clr == clrTransparent ? before[IndexOf(x, y, SIDE)] : clr;
            });
        }
    }
}

// In whole numbers, whose division drops the remainder.
int Blend(int nFrom, int nTo, int nShare) {
    return nFrom + (nTo - nFrom) * nShare / 256;
}

TEST_F(Pictures, OpacityBlendsEveryPairOfBytes) {
    // Columns: the picture's channels, three different orders of all values. Rows: the opacity.
    const CString strBase =
        File("base.bmp", SIDE, SIDE, [](int x, int) { return MakeColor(x, 255 - x, x ^ 0x55); });
    ASSERT_TRUE(m_logo.Load(strBase, BlueFile("op.bmp", [](int, int y) { return y; }), &m_wnd));
    for (const COLORREF clrBack : {0x000000U, 0xFFFFFFU, 0x1280FEU}) {
        ASSERT_TRUE(m_logo.Blend(clrBack));
        m_logo.Draw(&m_mem.dc, 0, 0);
        ExpectPixels([clrBack](int x, int y) {
            return MakeColor(Blend(x, GetRed(clrBack), y), Blend(255 - x, GetGreen(clrBack), y),
                             Blend(x ^ 0x55, GetBlue(clrBack), y));
        });
    }
}

TEST_F(Pictures, TintRendersEveryPairOfBytes) {
    ASSERT_TRUE(m_strip.Load(BlueFile("c.bmp", [](int x, int) { return x; }),
                             BlueFile("b.bmp", [](int, int y) { return y; }), &m_wnd));
    // Black is where it starts.
    for (const COLORREF clrTint : {0x000000U, 0xFFFFFFU, 0x4180FEU}) {
        if (clrTint != 0) {
            m_strip.SetColor(clrTint);
        }
        m_strip.DrawPart(&m_mem.dc, 0, 0, &ALL);
        ExpectPixels([clrTint](int x, int y) {
            const auto render = [x, y](int nTint) { return Blend(Blend(255, nTint, 256 - x), 0, 256 - y); };
            return MakeColor(render(GetRed(clrTint)), render(GetGreen(clrTint)), render(GetBlue(clrTint)));
        });
    }
}

// The first file's size counts; where the second is smaller it counts as white. A part ends with the strip.
TEST_F(Pictures, FilesOfTwoSizesGiveTheFirstOnes) {
    const auto black = [](int, int) { return COLORREF{0}; };
    const CString strFirst = File("p.bmp", 4, 3, black);
    const CString strSecond = File("o.bmp", 2, 9, black);
    ASSERT_TRUE(m_logo.Load(strFirst, strSecond, &m_wnd));
    ASSERT_TRUE(m_strip.Load(strFirst, strSecond, &m_wnd));
    m_logo.Blend(WHITE);
    m_logo.Draw(&m_mem.dc, 0, 0);
    m_strip.SetColor(0xA03010);
    const RECT rcPart{1, 1, 9, 9};
    m_strip.DrawPart(&m_mem.dc, 4, 0, &rcPart);
    ExpectPixels([](int x, int y) {
        if (x < 4) {
            return y >= 3 ? GROUND : x < 2 ? 0 : 0xFEFEFE;
        }
        return x >= 7 || y >= 2 ? GROUND : x < 5 ? 0 : 0xA03010;
    });
}

TEST_F(Pictures, WithoutTheirFilesDrawNothing) {
    const CString strGood = File("good.bmp", 4, 3, [](int, int) { return COLORREF{0x1E140A}; });
    const auto draw = [this] {
        m_layer.Draw(&m_mem.dc, 0, 0);
        m_layer.DrawPart(&m_mem.dc, 0, 0, 0, 0, 7, 5);
        m_sprite.Draw(&m_mem.dc, 0, 0);
        EXPECT_TRUE(m_logo.Blend(WHITE));
        m_logo.Draw(&m_mem.dc, 0, 0);
        m_strip.SetColor(0xFF);
        m_strip.DrawPart(&m_mem.dc, 0, 0, &ALL);
        ExpectPixels([](int, int) { return GROUND; });
    };
    draw();
    for (const CString& strBad :
         {m_directory.Path("missing.bmp"), m_directory.Write("garbage.bmp", "BMgarbage")}) {
        EXPECT_FALSE(m_layer.Load(strBad, &m_wnd));
        EXPECT_FALSE(m_sprite.Load(strBad, &m_wnd, WHITE));
        EXPECT_FALSE(m_logo.Load(strBad, strGood, &m_wnd));
        EXPECT_FALSE(m_strip.Load(strBad, strGood, &m_wnd));
        draw();
        EXPECT_FALSE(m_logo.Load(strGood, strBad, &m_wnd));
        EXPECT_FALSE(m_strip.Load(strGood, strBad, &m_wnd));
        draw();
    }
    EXPECT_EQ(m_layer.GetHeight(), 0);
}

}  // namespace
