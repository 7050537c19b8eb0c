#include "platform/drawing/BitmapWriter.h"
#include "platform/drawing/MemoryDc.h"
#include "support/ScratchDirectory.h"
#include "widgets/OpacityBitmap.h"
#include "widgets/TintedBitmap.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <cstdint>

// The two pictures that are rendered from two files. The expected numbers are worked out in whole numbers,
// whose division drops the remainder.

namespace {

using bmp::Rgb;

constexpr RECT g_rcAll{0, 0, 256, 256};

std::uint8_t Byte(int n) {
    return static_cast<std::uint8_t>(n);
}

class Rendering : public testing::Test {
protected:
    // Blue is given; the other channels are noise that must not count.
    std::string BlueFile(const std::string& name, int cx, int cy, int (*blue)(int x, int y)) const {
        return m_directory.Write(name, bmp::Encode24(cx, cy, [blue](int x, int y) {
                                     return Rgb{Byte(x * 77 + y), Byte(255 - y * 3), Byte(blue(x, y))};
                                 }));
    }
    std::string PlainFile(const std::string& name, int cx, int cy, Rgb rgb) const {
        return m_directory.Write(name, bmp::Encode24(cx, cy, [rgb](int, int) { return rgb; }));
    }

    CScratchDirectory m_directory;
    CStageWnd m_wnd;
    MemoryDc m_mem{256, 256};
};

class Opacity : public Rendering {
protected:
    COpacityBitmap m_logo;
};

class Tint : public Rendering {
protected:
    // One pixel of the given blue channels under a tint.
    COLORREF Render(int nShape, int nBevel, COLORREF clrTint) {
        CTintedBitmap strip;
        EXPECT_TRUE(strip.Load(PlainFile("c.bmp", 1, 1, {9, 99, Byte(nShape)}),
                               PlainFile("b.bmp", 1, 1, {99, 9, Byte(nBevel)}), &m_wnd));
        strip.SetColor(clrTint);
        const RECT rc{0, 0, 1, 1};
        strip.DrawPart(&m_mem.dc, 3, 4, &rc);
        return m_mem.dc.GetPixel(3, 4);
    }

    CTintedBitmap m_strip;
};

TEST_F(Opacity, BlendsEveryPairOfBytes) {
    // Columns: the picture's channels, three different orders of all values. Rows: the opacity.
    const std::string base = m_directory.Write("base.bmp", bmp::Encode24(256, 256, [](int x, int) {
                                                   return Rgb{Byte(x), Byte(255 - x), Byte(x ^ 0x55)};
                                               }));
    ASSERT_TRUE(m_logo.Load(base, BlueFile("op.bmp", 256, 256, [](int, int y) { return y; }), &m_wnd));
    for (const COLORREF clrBack : {0x000000U, 0xFFFFFFU, 0xC0C0C0U, 0x1280FEU}) {
        ASSERT_TRUE(m_logo.Blend(clrBack));
        m_logo.Draw(&m_mem.dc, 0, 0);
        for (int y = 0; y < 256; ++y) {
            for (int x = 0; x < 256; ++x) {
                const auto blend = [y](int nPicture, int nBack) {
                    return nPicture + (nBack - nPicture) * y / 256;
                };
                ASSERT_EQ(m_mem.dc.GetPixel(x, y),
                          MakeColor(blend(x, GetRed(clrBack)), blend(255 - x, GetGreen(clrBack)),
                                    blend(x ^ 0x55, GetBlue(clrBack))))
                    << "picture " << x << " opacity " << y;
            }
        }
    }
}

TEST_F(Opacity, IsTruncatedTowardThePicture) {
    const struct {
        int nPicture, nOpacity, nBack, nResult;
    } cases[] = {{0, 255, 255, 254}, {255, 255, 0, 1}, {100, 0, 200, 100}, {10, 128, 21, 15},
                 {21, 128, 10, 16},  {7, 255, 7, 7},   {0, 1, 255, 0},     {0, 2, 255, 1}};
    for (const auto& c : cases) {
        COpacityBitmap logo;
        ASSERT_TRUE(
            logo.Load(PlainFile("p.bmp", 1, 1, {Byte(c.nPicture), Byte(c.nPicture), Byte(c.nPicture)}),
                      PlainFile("o.bmp", 1, 1, {0, 0, Byte(c.nOpacity)}), &m_wnd));
        EXPECT_TRUE(logo.Blend(MakeColor(c.nBack, c.nBack, c.nBack)));
        logo.Draw(&m_mem.dc, 0, 0);
        EXPECT_EQ(m_mem.dc.GetPixel(0, 0), MakeColor(c.nResult, c.nResult, c.nResult)) << c.nPicture;
    }
}

TEST_F(Opacity, BlendsAnewFromTheFiles) {
    ASSERT_TRUE(
        m_logo.Load(PlainFile("p.bmp", 1, 1, {10, 20, 30}), PlainFile("o.bmp", 1, 1, {0, 0, 100}), &m_wnd));
    m_logo.Blend(0xC0C0C0);
    m_logo.Draw(&m_mem.dc, 0, 0);
    m_logo.Blend(0x000000);
    m_logo.Blend(0xC0C0C0);
    m_logo.Draw(&m_mem.dc, 1, 0);
    EXPECT_EQ(m_mem.dc.GetPixel(0, 0), m_mem.dc.GetPixel(1, 0));
}

TEST_F(Opacity, FilesOfTwoSizesGiveThePicturesOwn) {
    ASSERT_TRUE(
        m_logo.Load(PlainFile("p.bmp", 4, 3, {10, 20, 30}), PlainFile("o.bmp", 2, 9, {0, 0, 0}), &m_wnd));
    m_logo.Blend(0xFFFFFF);
    m_mem.dc.FillSolidRect(0, 0, 10, 10, 0x123456);
    m_logo.Draw(&m_mem.dc, 0, 0);
    EXPECT_EQ(m_mem.dc.GetPixel(1, 2), MakeColor(10, 20, 30));
    EXPECT_EQ(m_mem.dc.GetPixel(3, 2), MakeColor(254, 254, 254))
        << "where opacity is missing the background shows";
    EXPECT_EQ(m_mem.dc.GetPixel(4, 2), 0x123456U);
    EXPECT_EQ(m_mem.dc.GetPixel(1, 3), 0x123456U);
}

TEST_F(Opacity, WithoutBothFilesDrawsNothing) {
    const std::string good = PlainFile("p.bmp", 4, 3, {10, 20, 30});
    const std::string missing = m_directory.Path("missing.bmp");
    m_mem.dc.FillSolidRect(0, 0, 10, 10, 0x123456);
    for (const auto& [first, second] : {std::pair{good, missing}, {missing, good}, {missing, missing}}) {
        COpacityBitmap logo;
        EXPECT_FALSE(logo.Load(first, second, &m_wnd));
        EXPECT_TRUE(logo.Blend(0xFFFFFF));
        logo.Draw(&m_mem.dc, 0, 0);
    }
    EXPECT_TRUE(m_logo.Blend(0xFFFFFF));
    m_logo.Draw(&m_mem.dc, 0, 0);
    EXPECT_EQ(m_mem.dc.GetPixel(0, 0), 0x123456U);
}

TEST_F(Tint, RendersEveryPairOfBytes) {
    ASSERT_TRUE(m_strip.Load(BlueFile("c.bmp", 256, 256, [](int x, int) { return x; }),
                             BlueFile("b.bmp", 256, 256, [](int, int y) { return y; }), &m_wnd));
    for (const COLORREF clrTint : {0x000000U, 0xFFFFFFU, 0xFF0000U, 0x4180FEU}) {
        m_strip.SetColor(clrTint);
        m_strip.DrawPart(&m_mem.dc, 0, 0, &g_rcAll);
        for (int y = 0; y < 256; ++y) {
            for (int x = 0; x < 256; ++x) {
                const auto render = [x, y](int nTint) {
                    const int nFlat = 255 + (256 - x) * (nTint - 255) / 256;
                    return nFlat - nFlat * (256 - y) / 256;
                };
                ASSERT_EQ(
                    m_mem.dc.GetPixel(x, y),
                    MakeColor(render(GetRed(clrTint)), render(GetGreen(clrTint)), render(GetBlue(clrTint))))
                    << "shape " << x << " bevel " << y;
            }
        }
    }
}

TEST_F(Tint, HasTheseValues) {
    EXPECT_EQ(Render(0, 255, 0x000000), 0x000000U);
    EXPECT_EQ(Render(0, 255, 0xA03010), 0xA03010U) << "white of the bevel keeps the tint";
    EXPECT_EQ(Render(0, 0, 0xA03010), 0x000000U) << "black of the bevel is black";
    EXPECT_EQ(Render(255, 255, 0x000000), 0xFFFFFFU) << "white of the shape stays white";
    EXPECT_EQ(Render(255, 128, 0xA03010), 0x808080U);
    EXPECT_EQ(Render(0, 64, 0xFFFFFF), Render(255, 64, 0x123456)) << "with white, only the bevel counts";
    // 255 - trunc(127.5) = 128, and half of it off.
    EXPECT_EQ(Render(128, 128, 0x000000), 0x404040U);
    // 255 - trunc(0.75 * 95) = 184; 184 - trunc(184 * 0.21875) = 184 - 40 = 144.
    EXPECT_EQ(Render(64, 200, 0xA0A0A0), 0x909090U);
}

TEST_F(Tint, StartsInBlackAndCutsGlyphs) {
    ASSERT_TRUE(
        m_strip.Load(PlainFile("c.bmp", 10, 4, {0, 0, 0}), PlainFile("b.bmp", 10, 4, {0, 0, 255}), &m_wnd));
    m_mem.dc.FillSolidRect(0, 0, 40, 40, 0x123456);
    const RECT rc{7, 0, 14, 4};
    m_strip.DrawPart(&m_mem.dc, 20, 20, &rc);
    for (int x = 18; x < 30; ++x) {
        EXPECT_EQ(m_mem.dc.GetPixel(x, 23), x >= 20 && x < 23 ? 0U : 0x123456U) << x;
    }
    EXPECT_EQ(m_mem.dc.GetPixel(21, 24), 0x123456U);
}

TEST_F(Tint, FilesOfTwoSizesGiveTheShapesOwn) {
    ASSERT_TRUE(
        m_strip.Load(PlainFile("c.bmp", 4, 3, {0, 0, 0}), PlainFile("b.bmp", 2, 9, {0, 0, 0}), &m_wnd));
    m_strip.SetColor(0xA03010);
    m_mem.dc.FillSolidRect(0, 0, 10, 10, 0x123456);
    m_strip.DrawPart(&m_mem.dc, 0, 0, &g_rcAll);
    EXPECT_EQ(m_mem.dc.GetPixel(1, 2), 0U);
    EXPECT_EQ(m_mem.dc.GetPixel(3, 2), 0xA03010U) << "where the bevel is missing the tint stands plain";
    EXPECT_EQ(m_mem.dc.GetPixel(4, 2), 0x123456U);
}

TEST_F(Tint, WithoutBothFilesDrawsNothing) {
    const std::string good = PlainFile("p.bmp", 4, 3, {10, 20, 30});
    const std::string missing = m_directory.Path("missing.bmp");
    m_mem.dc.FillSolidRect(0, 0, 10, 10, 0x123456);
    for (const auto& [first, second] : {std::pair{good, missing}, {missing, good}}) {
        CTintedBitmap strip;
        EXPECT_FALSE(strip.Load(first, second, &m_wnd));
        strip.SetColor(0xFF);
        strip.DrawPart(&m_mem.dc, 0, 0, &g_rcAll);
    }
    m_strip.SetColor(0xFF);
    m_strip.DrawPart(&m_mem.dc, 0, 0, &g_rcAll);
    EXPECT_EQ(m_mem.dc.GetPixel(0, 0), 0x123456U);
}

}  // namespace
