#include "platform/drawing/BitmapWriter.h"
#include "platform/drawing/MemoryDc.h"
#include "support/ScratchDirectory.h"
#include "widgets/MaskedSprite.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

namespace {

constexpr int g_cx = 9;
constexpr int g_cy = 6;
constexpr SIZE g_sizeTarget{24, 18};

// White outside a disc; inside colours of all kinds, black and nearly white among them.
bmp::Rgb SpriteAt(int x, int y) {
    const int dx = 2 * x - g_cx + 1;
    const int dy = 3 * y - g_cx + 2;
    if (dx * dx + dy * dy > 60) {
        return {255, 255, 255};
    }
    static constexpr bmp::Rgb s_inside[] = {{0, 0, 0}, {255, 255, 254}, {18, 52, 86}, {255, 0, 0}};
    return s_inside[(x + 2 * y) % 4];
}

COLORREF ToColor(const bmp::Rgb& rgb) {
    return MakeColor(rgb.red, rgb.green, rgb.blue);
}

class MaskedSprite : public testing::Test {
protected:
    // Draws over noise at (x, y) and expects the file's pixels there, but for those of the transparent
    // colour.
    void ExpectSprite(CMaskedSprite& sprite, COLORREF clrTransparent, int x, int y) {
        MemoryDc mem(g_sizeTarget.cx, g_sizeTarget.cy);
        Scribble(mem.dc, g_sizeTarget, m_random);
        std::vector<COLORREF> expected = ReadAll(mem.dc, g_sizeTarget);
        for (int py = 0; py < g_sizeTarget.cy; ++py) {
            for (int px = 0; px < g_sizeTarget.cx; ++px) {
                if (PtInRect({x, y, x + g_cx, y + g_cy}, {px, py}) &&
                    ToColor(SpriteAt(px - x, py - y)) != clrTransparent) {
                    expected[IndexOf(px, py, g_sizeTarget.cx)] = ToColor(SpriteAt(px - x, py - y));
                }
            }
        }
        sprite.Draw(&mem.dc, x, y);
        ASSERT_EQ(ReadAll(mem.dc, g_sizeTarget), expected) << x << "," << y;
    }

    std::mt19937 m_random = Random(17);
    CScratchDirectory m_directory;
    CStageWnd m_wnd;
};

TEST_F(MaskedSprite, ShowsWhatLiesUnderItAtEveryPlace) {
    CMaskedSprite sprite;
    ASSERT_TRUE(
        sprite.Load(m_directory.Write("s.bmp", bmp::Encode24(g_cx, g_cy, SpriteAt)), &m_wnd, 0xFFFFFF));
    for (int y = -g_cy - 1; y <= g_sizeTarget.cy + 1; ++y) {
        for (int x = -g_cx - 1; x <= g_sizeTarget.cx + 1; ++x) {
            ExpectSprite(sprite, 0xFFFFFF, x, y);
        }
    }
}

TEST_F(MaskedSprite, TakesAnyColourAsTransparent) {
    const std::string file = m_directory.Write("s.bmp", bmp::Encode24(g_cx, g_cy, SpriteAt));
    for (const COLORREF clr : {MakeColor(18, 52, 86), MakeColor(0, 0, 0), MakeColor(255, 255, 254)}) {
        CMaskedSprite sprite;
        ASSERT_TRUE(sprite.Load(file, &m_wnd, clr));
        ExpectSprite(sprite, clr, 5, 5);
    }
    CMaskedSprite opaque;
    ASSERT_TRUE(opaque.Load(file, &m_wnd, MakeColor(1, 2, 3)));
    ExpectSprite(opaque, CLR_INVALID, 5, 5);
}

TEST_F(MaskedSprite, OnAWindowsPictureIsTheSame) {
    CMaskedSprite sprite;
    ASSERT_TRUE(
        sprite.Load(m_directory.Write("s.bmp", bmp::Encode24(g_cx, g_cy, SpriteAt)), &m_wnd, 0xFFFFFF));
    m_wnd.Draw([&sprite](CDC* pDc) {
        pDc->FillSolidRect(CStageWnd::s_rcClient, 0x204060);
        pDc->SetTextColor(0x123456);
        pDc->SetBkColor(0x654321);
        sprite.Draw(pDc, 490, 390);
    });
    EXPECT_TRUE(PixelsAre(m_wnd, {480, 380, 500, 396}, [](int x, int y) {
        const bool bInside = PtInRect({490, 390, 490 + g_cx, 390 + g_cy}, {x, y});
        const COLORREF clr = bInside ? ToColor(SpriteAt(x - 490, y - 390)) : 0xFFFFFF;
        return clr == 0xFFFFFF ? 0x204060 : clr;
    }));
}

TEST_F(MaskedSprite, WithoutAFileDrawsNothing) {
    MemoryDc mem(4, 4);
    mem.dc.FillSolidRect(0, 0, 4, 4, 0x123456);
    CMaskedSprite sprite;
    sprite.Draw(&mem.dc, 0, 0);
    EXPECT_FALSE(sprite.Load(m_directory.Path("missing.bmp"), &m_wnd, 0xFFFFFF));
    sprite.Draw(&mem.dc, 0, 0);
    EXPECT_EQ(ReadAll(mem.dc, {4, 4}), std::vector<COLORREF>(16, 0x123456));
}

}  // namespace
