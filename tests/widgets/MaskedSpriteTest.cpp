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
COLORREF SpriteAt(int x, int y) {
    const int dx = 2 * x - g_cx + 1;
    const int dy = 3 * y - g_cx + 2;
    static constexpr COLORREF s_inside[] = {0x000000, 0xFEFFFF, 0x563412, 0x0000FF};
    return dx * dx + dy * dy > 60 ? 0xFFFFFF : s_inside[(x + 2 * y) % 4];
}

class MaskedSprite : public testing::Test {
protected:
    MaskedSprite() { WriteBitmap(m_strFile, g_cx, g_cy, SpriteAt); }

    // Draws over noise at (x, y) and expects the file's pixels there, but for those of the transparent
    // colour.
    void ExpectSprite(CMaskedSprite& sprite, COLORREF clrTransparent, int x, int y) {
        MemoryDc mem(g_sizeTarget.cx, g_sizeTarget.cy);
        Scribble(mem.dc, g_sizeTarget, m_random);
        std::vector<COLORREF> expected = ReadAll(mem.dc, g_sizeTarget);
        for (int py = 0; py < g_sizeTarget.cy; ++py) {
            for (int px = 0; px < g_sizeTarget.cx; ++px) {
                if (PtInRect({x, y, x + g_cx, y + g_cy}, {px, py}) &&
                    SpriteAt(px - x, py - y) != clrTransparent) {
                    expected[IndexOf(px, py, g_sizeTarget.cx)] = SpriteAt(px - x, py - y);
                }
            }
        }
        sprite.Draw(&mem.dc, x, y);
        ASSERT_EQ(ReadAll(mem.dc, g_sizeTarget), expected) << x << "," << y;
    }

    std::mt19937 m_random = Random(17);
    CScratchDirectory m_directory;
    const CString m_strFile = m_directory.Path("s.bmp");
    CStageWnd m_wnd;
};

TEST_F(MaskedSprite, ShowsWhatLiesUnderItAtEveryPlace) {
    CMaskedSprite sprite;
    ASSERT_TRUE(sprite.Load(m_strFile, &m_wnd, 0xFFFFFF));
    for (int y = -g_cy - 1; y <= g_sizeTarget.cy + 1; ++y) {
        for (int x = -g_cx - 1; x <= g_sizeTarget.cx + 1; ++x) {
            ExpectSprite(sprite, 0xFFFFFF, x, y);
        }
    }
}

TEST_F(MaskedSprite, TakesAnyColourAsTransparent) {
    for (const COLORREF clr : {0x563412U, 0x000000U, 0xFEFFFFU, 0x030201U}) {
        CMaskedSprite sprite;
        ASSERT_TRUE(sprite.Load(m_strFile, &m_wnd, clr));
        ExpectSprite(sprite, clr, 5, 5);
    }
}

// On a window's picture, whose context has colours of its own.
TEST_F(MaskedSprite, IsNotColouredByItsGround) {
    CMaskedSprite sprite;
    ASSERT_TRUE(sprite.Load(m_strFile, &m_wnd, 0xFFFFFF));
    m_wnd.Draw([&sprite](CDC* pDc) {
        pDc->FillSolidRect(CStageWnd::s_rcClient, 0x204060);
        pDc->SetTextColor(0x123456);
        pDc->SetBkColor(0x654321);
        sprite.Draw(pDc, 100, 90);
    });
    EXPECT_TRUE(PixelsAre(m_wnd, {90, 80, 120, 110}, [](int x, int y) {
        const bool bInside = PtInRect({100, 90, 100 + g_cx, 90 + g_cy}, {x, y});
        const COLORREF clr = bInside ? SpriteAt(x - 100, y - 90) : 0xFFFFFF;
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
