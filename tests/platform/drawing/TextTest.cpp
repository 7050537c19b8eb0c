#include "platform/drawing/Dc.h"
#include "platform/drawing/Font.h"
#include "platform/drawing/MemoryDc.h"
#include "platform/drawing/Picture.h"
#include "support/GraphicsSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <set>

namespace {

constexpr int CX = 90;
constexpr int CY = 40;
constexpr UINT CENTRED = DT_VCENTER | DT_SINGLELINE;
constexpr const char* FACE = "MS Sans Serif";

class Text : public testing::Test {
protected:
    static void SetUpTestSuite() { s_pSession = std::make_unique<CGraphicsSession>(); }
    static void TearDownTestSuite() { s_pSession.reset(); }

    void SetUp() override {
        m_mem.dc.SetBkMode(TRANSPARENT);
        ASSERT_TRUE(m_font.CreatePointFont(80, FACE, &m_mem.dc));
        m_mem.dc.SelectObject(&m_font);
    }

    // The rectangle around all pixels that a text changes on white.
    std::optional<RECT> Ink(const CString& strText, const RECT& rc, UINT nFormat = 0) {
        m_mem.dc.FillSolidRect(0, 0, CX, CY, 0xFFFFFF);
        m_mem.dc.DrawText(strText, rc, nFormat);
        std::optional<RECT> ink;
        for (int y = 0; y < CY; ++y) {
            for (int x = 0; x < CX; ++x) {
                if (m_mem.dc.GetPixel(x, y) != 0xFFFFFF) {
                    ink = ink ? RECT{std::min(ink->left, x), std::min(ink->top, y),
                                     std::max(ink->right, x + 1), std::max(ink->bottom, y + 1)}
                              : RECT{x, y, x + 1, y + 1};
                }
            }
        }
        return ink;
    }

    static inline std::unique_ptr<CGraphicsSession> s_pSession;
    MemoryDc m_mem{CX, CY};
    CFont m_font;
};

TEST_F(Text, StaysInItsRectangle) {
    const RECT rectangles[] = {{16, 3, 40, 18}, {16, 3, 26, 9}, {-5, -4, 20, 8}, {80, 20, 120, 40}};
    for (const RECT& rc : rectangles) {
        for (const UINT nFormat : {0U, CENTRED}) {
            const auto ink = Ink("Wgj#弦校音", rc, nFormat);
            ASSERT_TRUE(ink.has_value());
            EXPECT_TRUE(ink->left >= rc.left && ink->top >= rc.top && ink->right <= rc.right &&
                        ink->bottom <= rc.bottom);
        }
    }
    EXPECT_FALSE(Ink("W", {20, 20, 20, 30}).has_value());
    EXPECT_FALSE(Ink("W", {200, 20, 220, 30}).has_value());
    EXPECT_FALSE(Ink("", {0, 0, CX, CY}).has_value());
}

TEST_F(Text, StandsAtTheTopOrInTheMiddleFromTheLeft) {
    const RECT rc{10, 4, 80, 36};
    const RECT rcTop = Ink("E2", rc).value();
    const RECT rcMiddle = Ink("E2", rc, CENTRED).value();
    EXPECT_LT(rcTop.bottom, rc.top + 14);
    EXPECT_EQ(rcTop.left, rcMiddle.left);
    EXPECT_LE(rcTop.left, rc.left + 2);
    EXPECT_NEAR((rcMiddle.top + rcMiddle.bottom) / 2.0, (rc.top + rc.bottom) / 2.0, 2.0);
}

TEST_F(Text, TakesItsColoursAndItsGround) {
    m_mem.dc.SetTextColor(0x0000FF);
    ASSERT_TRUE(Ink("E", {5, 5, 40, 30}));
    const std::vector<COLORREF> drawn = ReadAll(m_mem.dc, {CX, CY});
    // Between white and red: never a tinge of the colours beside it.
    EXPECT_TRUE(std::all_of(drawn.begin(), drawn.end(), [](COLORREF clr) {
        return GetRed(clr) == 255 && GetGreen(clr) == GetBlue(clr);
    }));
    EXPECT_TRUE(std::any_of(drawn.begin(), drawn.end(), [](COLORREF clr) { return GetGreen(clr) < 64; }));
    m_mem.dc.SetBkColor(0x00FF00);
    for (const auto& [nMode, clrGround] : {std::pair{TRANSPARENT, 0xFFFFFFU}, {OPAQUE, 0x00FF00U}}) {
        m_mem.dc.SetBkMode(nMode);
        m_mem.dc.DrawText("E", {5, 5, 40, 30}, 0);
        EXPECT_EQ(m_mem.dc.GetPixel(5, 5), clrGround);
    }
    EXPECT_EQ(m_mem.dc.GetPixel(5, 28), 0xFFFFFFU) << "the ground is as high as the line";
}

// Whole pixels of 96 to the inch, and small enough for what stands above a string.
TEST_F(Text, HasTheSizeThatTheLayoutCountsOn) {
    for (const auto& [nTenths, nPixels] : {std::pair{80, 11}, {77, 10}, {115, 15}, {94, 13}, {720, 96}}) {
        CFont font;
        ASSERT_TRUE(font.CreatePointFont(nTenths, FACE));
        EXPECT_EQ(font.GetPixelSize(), nPixels) << nTenths;
        m_mem.dc.SelectObject(&font);
        TEXTMETRIC metrics;
        ASSERT_TRUE(m_mem.dc.GetTextMetrics(&metrics));
        EXPECT_EQ(metrics.tmHeight, metrics.tmAscent + metrics.tmDescent);
        EXPECT_TRUE(metrics.tmHeight > nPixels && metrics.tmHeight < nPixels * 3 / 2) << metrics.tmHeight;
        m_mem.dc.SelectObject(&m_font);
    }
    for (const char* const szNote : {"F#3", "Bb4", "G#4"}) {
        EXPECT_LE(Ink(szNote, {10, 5, 80, 20}, CENTRED).value().right, 10 + 24) << szNote;
    }
}

// A missing glyph is the same box for every character.
TEST_F(Text, HasTheChineseGlyphs) {
    std::set<std::vector<COLORREF>> pictures;
    for (const char* const szCharacter : {"六", "弦", "校", "音", "设", "置"}) {
        ASSERT_TRUE(Ink(szCharacter, {5, 5, 40, 30}).has_value());
        pictures.insert(ReadAll(m_mem.dc, {CX, CY}));
    }
    EXPECT_EQ(pictures.size(), 6U);
}

TEST_F(Text, OnAPictureIsMarkedAndOpaque) {
    CPicture picture;
    ASSERT_TRUE(picture.Create(CX, CY, 0xC0C0C0));
    picture.TakeDirty();
    CDC dc;
    dc.AttachPicture(&picture);
    dc.SelectObject(&m_font);
    dc.SetBkMode(TRANSPARENT);
    dc.DrawText("G#4", {-3, 10, 30, 25}, CENTRED);
    const CPicture::Dirty dirty = picture.TakeDirty();
    ASSERT_EQ(dirty.nCount, 1U);
    EXPECT_EQ(dirty.rects[0], (RECT{0, 10, 30, 25}));
    const Pixel* const pFirst = picture.GetSurface().GetRow(0);
    EXPECT_TRUE(
        std::all_of(pFirst, pFirst + IndexOf(0, CY, CX), [](Pixel pixel) { return pixel >> 24 == 0xFF; }));
}

TEST_F(Text, WithoutAFontOrColoursDrawsNothing) {
    CFont fontEmpty;
    for (const int nTenths : {0, -80, 3}) {
        EXPECT_FALSE(fontEmpty.CreatePointFont(nTenths, FACE)) << nTenths;
    }
    m_mem.dc.SelectObject(&fontEmpty);
    EXPECT_FALSE(Ink("E", {5, 5, 40, 30}).has_value());
    TEXTMETRIC metrics{1, 1, 1};
    EXPECT_FALSE(m_mem.dc.GetTextMetrics(&metrics));
    EXPECT_EQ(metrics.tmHeight, 0);
    MemoryDc mono(20, 20, true);
    mono.dc.SelectObject(&m_font);
    EXPECT_EQ(mono.dc.DrawText("E", {5, 5, 40, 30}, 0), 0);
}

TEST(TextWithoutApplication, DrawsNothing) {
    MemoryDc mem(30, 20);
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(80, FACE));
    mem.dc.SelectObject(&font);
    EXPECT_EQ(mem.dc.DrawText("E", {0, 0, 30, 20}, 0), 0);
}

}  // namespace
