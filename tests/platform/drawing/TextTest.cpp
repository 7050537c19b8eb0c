#include "platform/drawing/Dc.h"
#include "platform/drawing/Font.h"
#include "platform/drawing/GraphicsSession.h"
#include "platform/drawing/MemoryDc.h"
#include "platform/drawing/Picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>

namespace {

constexpr int g_cx = 90;
constexpr int g_cy = 40;
constexpr UINT g_nCentred = DT_VCENTER | DT_SINGLELINE;

class Text : public testing::Test {
protected:
    static void SetUpTestSuite() { s_pSession = std::make_unique<CGraphicsSession>(); }
    static void TearDownTestSuite() { s_pSession.reset(); }

    void SetUp() override {
        m_mem.dc.FillSolidRect(0, 0, g_cx, g_cy, 0xFFFFFF);
        m_mem.dc.SetBkMode(TRANSPARENT);
        ASSERT_TRUE(m_font.CreatePointFont(80, "MS Sans Serif", &m_mem.dc));
        m_mem.dc.SelectObject(&m_font);
    }

    // Around all pixels that aren't white any more.
    std::optional<RECT> Ink() const {
        std::optional<RECT> ink;
        for (int y = 0; y < g_cy; ++y) {
            for (int x = 0; x < g_cx; ++x) {
                if (m_mem.dc.GetPixel(x, y) != 0xFFFFFF) {
                    ink = ink ? RECT{std::min(ink->left, x), std::min(ink->top, y),
                                     std::max(ink->right, x + 1), std::max(ink->bottom, y + 1)}
                              : RECT{x, y, x + 1, y + 1};
                }
            }
        }
        return ink;
    }

    static std::unique_ptr<CGraphicsSession> s_pSession;
    MemoryDc m_mem{g_cx, g_cy};
    CFont m_font;
};

std::unique_ptr<CGraphicsSession> Text::s_pSession;

TEST_F(Text, StaysInItsRectangle) {
    const RECT rectangles[] = {
        {16, 3, 40, 18}, {16, 3, 26, 9}, {-5, -4, 20, 8}, {80, 20, 120, 40}, {30, 20, 31, 21}};
    for (const RECT& rc : rectangles) {
        for (const UINT nFormat : {0U, g_nCentred}) {
            m_mem.dc.FillSolidRect(0, 0, g_cx, g_cy, 0xFFFFFF);
            EXPECT_GT(m_mem.dc.DrawText("Wgj#弦校音", rc, nFormat), 0);
            const auto ink = Ink();
            ASSERT_TRUE(ink.has_value() || rc.Width() == 1);
            EXPECT_TRUE(!ink || (ink->left >= rc.left && ink->top >= rc.top && ink->right <= rc.right &&
                                 ink->bottom <= rc.bottom));
        }
    }
    m_mem.dc.FillSolidRect(0, 0, g_cx, g_cy, 0xFFFFFF);
    m_mem.dc.DrawText("W", {20, 20, 20, 30}, 0);
    m_mem.dc.DrawText("W", {200, 20, 220, 30}, 0);
    m_mem.dc.DrawText("", {0, 0, g_cx, g_cy}, 0);
    EXPECT_FALSE(Ink().has_value());
}

TEST_F(Text, StandsAtTheTopOrInTheMiddleFromTheLeft) {
    const RECT rc{10, 4, 80, 36};
    m_mem.dc.DrawText("E2", rc, 0);
    const RECT rcTop = Ink().value();
    m_mem.dc.FillSolidRect(0, 0, g_cx, g_cy, 0xFFFFFF);
    m_mem.dc.DrawText("E2", rc, g_nCentred);
    const RECT rcMiddle = Ink().value();
    EXPECT_LT(rcTop.bottom, rc.top + 14);
    EXPECT_EQ(rcTop.left, rcMiddle.left);
    EXPECT_LE(rcTop.left, rc.left + 2);
    EXPECT_NEAR((rcMiddle.top + rcMiddle.bottom) / 2.0, (rc.top + rc.bottom) / 2.0, 2.0);
}

TEST_F(Text, TakesItsColoursAndItsGround) {
    m_mem.dc.SetTextColor(0x0000FF);
    m_mem.dc.SetBkColor(0x00FF00);
    m_mem.dc.DrawText("E", {5, 5, 40, 30}, 0);
    bool bPure = false;
    for (const COLORREF clr : ReadAll(m_mem.dc, {g_cx, g_cy})) {
        // Between white and red: never a tinge of the colours beside it.
        ASSERT_EQ(GetRed(clr), 255);
        ASSERT_EQ(GetGreen(clr), GetBlue(clr));
        bPure = bPure || GetGreen(clr) < 64;
    }
    EXPECT_TRUE(bPure);
    EXPECT_EQ(m_mem.dc.GetPixel(5, 5), 0xFFFFFFU);
    m_mem.dc.SetBkMode(OPAQUE);
    m_mem.dc.DrawText("E", {5, 5, 40, 30}, 0);
    EXPECT_EQ(m_mem.dc.GetPixel(5, 5), 0x00FF00U);
    EXPECT_EQ(m_mem.dc.GetPixel(5, 28), 0xFFFFFFU) << "the ground is as high as the line";
}

TEST_F(Text, HasTheSizeThatTheLayoutCountsOn) {
    TEXTMETRIC metrics;
    ASSERT_TRUE(m_mem.dc.GetTextMetrics(&metrics));
    EXPECT_EQ(metrics.tmHeight, metrics.tmAscent + metrics.tmDescent);
    EXPECT_GE(metrics.tmHeight, 12);
    EXPECT_LE(metrics.tmHeight, 16);
    for (const char* const szNote : {"E2", "F#3", "Bb4", "G#4", "C#2"}) {
        m_mem.dc.FillSolidRect(0, 0, g_cx, g_cy, 0xFFFFFF);
        m_mem.dc.DrawText(szNote, {10, 5, 80, 20}, g_nCentred);
        EXPECT_LE(Ink().value().right, 10 + 24) << szNote << " must fit above its string";
    }
    CFont fontLarge;
    ASSERT_TRUE(fontLarge.CreatePointFont(115, "MS Sans Serif"));
    EXPECT_EQ(m_mem.dc.SelectObject(&fontLarge), &m_font);
    TEXTMETRIC larger;
    ASSERT_TRUE(m_mem.dc.GetTextMetrics(&larger));
    EXPECT_GT(larger.tmHeight, metrics.tmHeight);
}

// A missing glyph is the same box for every character.
TEST_F(Text, HasTheChineseGlyphs) {
    std::vector<std::vector<COLORREF>> pictures;
    for (const char* const szCharacter : {"六", "弦", "校", "音", "设", "置"}) {
        m_mem.dc.FillSolidRect(0, 0, g_cx, g_cy, 0xFFFFFF);
        m_mem.dc.DrawText(szCharacter, {5, 5, 40, 30}, 0);
        ASSERT_TRUE(Ink().has_value());
        pictures.push_back(ReadAll(m_mem.dc, {g_cx, g_cy}));
    }
    std::sort(pictures.begin(), pictures.end());
    EXPECT_EQ(std::adjacent_find(pictures.begin(), pictures.end()), pictures.end());
}

TEST_F(Text, OnAPictureIsMarkedAndOpaque) {
    CPicture picture;
    ASSERT_TRUE(picture.Create(g_cx, g_cy, 0xC0C0C0));
    picture.TakeDirty();
    CDC dc;
    dc.AttachPicture(&picture);
    dc.SelectObject(&m_font);
    dc.SetBkMode(TRANSPARENT);
    dc.DrawText("G#4", {-3, 10, 30, 25}, g_nCentred);
    const CPicture::Dirty dirty = picture.TakeDirty();
    ASSERT_EQ(dirty.nCount, 1U);
    EXPECT_EQ(dirty.rects[0], (RECT{0, 10, 30, 25}));
    for (int y = 0; y < g_cy; ++y) {
        for (int x = 0; x < g_cx; ++x) {
            ASSERT_EQ(picture.GetSurface().GetRow(y)[x] >> 24, 0xFFU);
        }
    }
}

TEST_F(Text, WithoutWhatItNeedsDrawsNothing) {
    CFont fontEmpty;
    EXPECT_FALSE(fontEmpty.CreatePointFont(0, "MS Sans Serif"));
    EXPECT_FALSE(fontEmpty.CreatePointFont(-80, "MS Sans Serif"));
    EXPECT_FALSE(fontEmpty.CreatePointFont(3, "MS Sans Serif")) << "less than half a pixel";
    m_mem.dc.SelectObject(&fontEmpty);
    EXPECT_EQ(m_mem.dc.DrawText("E", {5, 5, 40, 30}, 0), 0);
    EXPECT_FALSE(Ink().has_value());
    TEXTMETRIC metrics{1, 1, 1};
    EXPECT_FALSE(m_mem.dc.GetTextMetrics(&metrics));
    EXPECT_EQ(metrics.tmHeight, 0);
    MemoryDc mono(20, 20, true);
    mono.dc.SelectObject(&m_font);
    EXPECT_EQ(mono.dc.DrawText("E", {5, 5, 40, 30}, 0), 0);
}

TEST_F(Text, IsRoundedToWholePixelsOf96ToTheInch) {
    CFont font;
    for (const auto& [nTenths, nPixels] : {std::pair{80, 11}, {77, 10}, {115, 15}, {94, 13}, {720, 96}}) {
        ASSERT_TRUE(font.CreatePointFont(nTenths, "MS Sans Serif"));
        EXPECT_EQ(font.GetPixelSize(), nPixels) << nTenths;
    }
    ASSERT_TRUE(font.CreatePointFont(80, "DejaVu Sans"));
    EXPECT_EQ(font.GetFamilies().front(), "DejaVu Sans");
}

TEST(TextWithoutApplication, DrawsNothing) {
    MemoryDc mem(30, 20);
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(80, "MS Sans Serif"));
    mem.dc.SelectObject(&font);
    EXPECT_EQ(mem.dc.DrawText("E", {0, 0, 30, 20}, 0), 0);
    TEXTMETRIC metrics;
    EXPECT_FALSE(mem.dc.GetTextMetrics(&metrics));
}

}  // namespace
