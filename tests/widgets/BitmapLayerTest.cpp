#include "platform/drawing/MemoryDc.h"
#include "support/ScratchDirectory.h"
#include "widgets/BitmapLayer.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

namespace {

constexpr COLORREF g_clrGround = 0x405060;

COLORREF LayerAt(int x, int y) {
    return MakeColor(x + 1, y + 1, 0x33);
}

class BitmapLayer : public testing::Test {
protected:
    BitmapLayer() { m_mem.dc.FillSolidRect(0, 0, 20, 16, g_clrGround); }

    // The rectangle at (xSrc, ySrc) of the layer, 7 by 5, stands at (x, y), all else is ground.
    void ExpectDrawn(int x, int y, int xSrc, int ySrc, int cx, int cy) const {
        for (int py = 0; py < 16; ++py) {
            for (int px = 0; px < 20; ++px) {
                const POINT ptLayer{px - x + xSrc, py - y + ySrc};
                const bool bDrawn =
                    PtInRect({0, 0, 7, 5}, ptLayer) && PtInRect({xSrc, ySrc, xSrc + cx, ySrc + cy}, ptLayer);
                ASSERT_EQ(m_mem.dc.GetPixel(px, py), bDrawn ? LayerAt(ptLayer.x, ptLayer.y) : g_clrGround)
                    << px << "," << py;
            }
        }
    }

    CScratchDirectory m_directory;
    CStageWnd m_wnd;
    MemoryDc m_mem{20, 16};
    CBitmapLayer m_layer;
};

TEST_F(BitmapLayer, WithoutAFileDrawsNothing) {
    EXPECT_FALSE(m_layer.Load(m_directory.Path("missing.bmp"), &m_wnd));
    EXPECT_FALSE(m_layer.Load(m_directory.Write("garbage.bmp", "BMgarbage"), &m_wnd));
    m_layer.Draw(&m_mem.dc, 0, 0);
    m_layer.DrawPart(&m_mem.dc, 0, 0, 0, 0, 7, 5);
    EXPECT_EQ(m_layer.GetHeight(), 0);
    ExpectDrawn(0, 0, 0, 0, 0, 0);
}

TEST_F(BitmapLayer, DrawsItselfOrAPartWhichEndsWithThePicture) {
    WriteBitmap(m_directory.Path("layer.bmp"), 7, 5, LayerAt);
    ASSERT_TRUE(m_layer.Load(m_directory.Path("layer.bmp"), &m_wnd));
    EXPECT_EQ(m_layer.GetHeight(), 5);
    m_layer.Draw(&m_mem.dc, 16, -2);
    ExpectDrawn(16, -2, 0, 0, 7, 5);
    for (const RECT& rc : {RECT{2, 1, 5, 3}, RECT{-3, 2, 27, 252}}) {
        m_mem.dc.FillSolidRect(0, 0, 20, 16, g_clrGround);
        m_layer.DrawPart(&m_mem.dc, 6, 4, rc.left, rc.top, rc.Width(), rc.Height());
        ExpectDrawn(6, 4, rc.left, rc.top, rc.Width(), rc.Height());
    }
}

}  // namespace
