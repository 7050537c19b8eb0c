#include "platform/drawing/MemoryDc.h"
#include "support/ScratchDirectory.h"
#include "widgets/OpacityBitmap.h"
#include "widgets/TintedBitmap.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

// The two pictures that are rendered from two files. The expected numbers are worked out in whole numbers,
// whose division drops the remainder.

namespace {

constexpr RECT g_rcAll{0, 0, 256, 256};
constexpr COLORREF g_clrGround = 0x123456;

class Rendering : public testing::Test {
protected:
    CString File(const CString& strName, int cx, int cy, const ExpectedColor& fnPixel) const {
        WriteBitmap(m_directory.Path(strName), cx, cy, fnPixel);
        return m_directory.Path(strName);
    }
    // Blue is given; the other channels are noise that must not count.
    CString BlueFile(const CString& strName, int cx, int cy, int (*blue)(int x, int y)) const {
        return File(strName, cx, cy, [blue](int x, int y) {
            return MakeColor((x * 77 + y) % 256, 255 - y * 3 % 256, blue(x, y));
        });
    }
    CString PlainFile(const CString& strName, int cx, int cy, COLORREF clr) const {
        return File(strName, cx, cy, [clr](int, int) { return clr; });
    }
    void ExpectPixels(const ExpectedColor& fnExpected) {
        for (int y = 0; y < 256; ++y) {
            for (int x = 0; x < 256; ++x) {
                ASSERT_EQ(m_mem.dc.GetPixel(x, y), fnExpected(x, y)) << x << ", " << y;
            }
        }
    }
    void ExpectPixel(int x, int y, COLORREF clr) { EXPECT_EQ(m_mem.dc.GetPixel(x, y), clr) << x; }

    CScratchDirectory m_directory;
    CStageWnd m_wnd;
    MemoryDc m_mem{256, 256};
    COpacityBitmap m_logo;
    CTintedBitmap m_strip;
};

TEST_F(Rendering, OpacityBlendsEveryPairOfBytes) {
    // Columns: the picture's channels, three different orders of all values. Rows: the opacity.
    const CString strBase =
        File("base.bmp", 256, 256, [](int x, int) { return MakeColor(x, 255 - x, x ^ 0x55); });
    ASSERT_TRUE(m_logo.Load(strBase, BlueFile("op.bmp", 256, 256, [](int, int y) { return y; }), &m_wnd));
    for (const COLORREF clrBack : {0x000000U, 0xFFFFFFU, 0xC0C0C0U, 0x1280FEU}) {
        ASSERT_TRUE(m_logo.Blend(clrBack));
        m_logo.Draw(&m_mem.dc, 0, 0);
        ExpectPixels([clrBack](int x, int y) {
            const auto blend = [y](int nPicture, int nBack) {
                return nPicture + (nBack - nPicture) * y / 256;
            };
            return MakeColor(blend(x, GetRed(clrBack)), blend(255 - x, GetGreen(clrBack)),
                             blend(x ^ 0x55, GetBlue(clrBack)));
        });
    }
}

TEST_F(Rendering, TintRendersEveryPairOfBytes) {
    ASSERT_TRUE(m_strip.Load(BlueFile("c.bmp", 256, 256, [](int x, int) { return x; }),
                             BlueFile("b.bmp", 256, 256, [](int, int y) { return y; }), &m_wnd));
    // Black is where it starts.
    for (const COLORREF clrTint : {0x000000U, 0xFFFFFFU, 0xFF0000U, 0x4180FEU}) {
        if (clrTint != 0) {
            m_strip.SetColor(clrTint);
        }
        m_strip.DrawPart(&m_mem.dc, 0, 0, &g_rcAll);
        ExpectPixels([clrTint](int x, int y) {
            const auto render = [x, y](int nTint) {
                const int nFlat = 255 + (256 - x) * (nTint - 255) / 256;
                return nFlat - nFlat * (256 - y) / 256;
            };
            return MakeColor(render(GetRed(clrTint)), render(GetGreen(clrTint)), render(GetBlue(clrTint)));
        });
    }
    // A glyph is cut at the strip's end.
    m_mem.dc.FillSolidRect(0, 0, 40, 40, g_clrGround);
    const RECT rcGlyph{253, 100, 260, 104};
    m_strip.DrawPart(&m_mem.dc, 20, 20, &rcGlyph);
    for (int x = 18; x < 30; ++x) {
        EXPECT_EQ(m_mem.dc.GetPixel(x, 23) != g_clrGround, x >= 20 && x < 23) << x;
        ExpectPixel(x, 24, g_clrGround);
    }
}

// The first file's size counts; where the second is smaller it counts as white.
TEST_F(Rendering, FilesOfTwoSizesGiveTheFirstOnes) {
    const CString strFirst = PlainFile("p.bmp", 4, 3, 0);
    const CString strSecond = PlainFile("o.bmp", 2, 9, 0);
    ASSERT_TRUE(m_logo.Load(strFirst, strSecond, &m_wnd));
    ASSERT_TRUE(m_strip.Load(strFirst, strSecond, &m_wnd));
    m_mem.dc.FillSolidRect(0, 0, 30, 10, g_clrGround);
    m_logo.Blend(0xFFFFFF);
    m_logo.Draw(&m_mem.dc, 0, 0);
    m_strip.SetColor(0xA03010);
    m_strip.DrawPart(&m_mem.dc, 10, 0, &g_rcAll);
    for (const int x : {0, 10}) {
        ExpectPixel(x + 1, 2, 0);
        ExpectPixel(x + 3, 2, x == 0 ? 0xFEFEFE : 0xA03010);
        ExpectPixel(x + 4, 2, g_clrGround);
        ExpectPixel(x + 1, 3, g_clrGround);
    }
}

TEST_F(Rendering, WithoutBothFilesDrawsNothing) {
    const CString strGood = PlainFile("p.bmp", 4, 3, 0x1E140A);
    const CString strMissing = m_directory.Path("missing.bmp");
    m_mem.dc.FillSolidRect(0, 0, 10, 10, g_clrGround);
    for (const auto& [strFirst, strSecond] :
         {std::pair{strGood, strMissing}, {strMissing, strGood}, {"", ""}}) {
        COpacityBitmap logo;
        CTintedBitmap strip;
        if (!strFirst.empty()) {
            EXPECT_FALSE(logo.Load(strFirst, strSecond, &m_wnd));
            EXPECT_FALSE(strip.Load(strFirst, strSecond, &m_wnd));
        }
        EXPECT_TRUE(logo.Blend(0xFFFFFF));
        logo.Draw(&m_mem.dc, 0, 0);
        strip.SetColor(0xFF);
        strip.DrawPart(&m_mem.dc, 0, 0, &g_rcAll);
        ExpectPixel(0, 0, g_clrGround);
    }
}

}  // namespace
