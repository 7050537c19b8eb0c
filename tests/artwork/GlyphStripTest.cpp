#include "artwork/BitmapFile.h"

#include <gtest/gtest.h>

#include <span>

// The glyph strips that the dial cuts its letters and digits from. That no reading leaves ink of the last one
// is proved with the dial itself.

namespace {

constexpr int GLYPH_ROWS = 27;

// Shape and bevel of one strip.
struct CStrip {
    CStrip(const std::string& strColor, const std::string& strBevel, std::span<const int> strip)
        : m_color(ReadBitmap(strColor)), m_bevel(ReadBitmap(strBevel)), m_edges(strip) {}

    int Glyphs() const { return static_cast<int>(m_edges.size()) - 1; }
    int Left(int nGlyph) const { return m_edges[static_cast<std::size_t>(nGlyph)]; }

    const BitmapFile m_color;
    const BitmapFile m_bevel;
    const std::span<const int> m_edges;
};

class GlyphStrips : public testing::Test {
protected:
    const CStrip m_letters{"NotesClr.bmp", "NotesBev.bmp", LETTER_EDGES};
    const CStrip m_digits{"NumClr.bmp", "NumBev.bmp", DIGIT_EDGES};
};

TEST_F(GlyphStrips, EveryGlyphStandsFreeInItsCellWithShadeOnItAlone) {
    for (const CStrip* pStrip : {&m_letters, &m_digits}) {
        ASSERT_EQ(pStrip->m_color.nWidth, pStrip->Left(pStrip->Glyphs()));
        ASSERT_EQ(pStrip->m_color.nHeight, GLYPH_ROWS);
        ASSERT_EQ(pStrip->m_bevel.nWidth, pStrip->m_color.nWidth);
        ASSERT_EQ(pStrip->m_bevel.nHeight, GLYPH_ROWS);
        int nShaded = 0;
        for (int nGlyph = 0; nGlyph < pStrip->Glyphs(); ++nGlyph) {
            SCOPED_TRACE(nGlyph);
            int nBody = 0;
            for (int y = 0; y < GLYPH_ROWS; ++y) {
                for (int x = pStrip->Left(nGlyph); x < pStrip->Left(nGlyph + 1); ++x) {
                    const Pixel color = pStrip->m_color.At(x, y);
                    const Pixel bevel = pStrip->m_bevel.At(x, y);
                    EXPECT_TRUE(IsGrey(color) && IsGrey(bevel));
                    EXPECT_TRUE(color != WHITE || bevel == WHITE) << x << ", " << y;
                    nBody += color.blue < 32 ? 1 : 0;
                    nShaded += bevel.blue < 192 ? 1 : 0;
                }
                EXPECT_EQ(pStrip->m_color.At(pStrip->Left(nGlyph), y), WHITE);
                EXPECT_EQ(pStrip->m_color.At(pStrip->Left(nGlyph + 1) - 1, y), WHITE);
            }
            EXPECT_GT(nBody, 40);
        }
        EXPECT_GT(nShaded, 100);
    }
}

TEST_F(GlyphStrips, CapitalsAndDigitsShareBaselineAndHeight) {
    for (const auto& [pStrip, nGlyphs] : {std::pair{&m_letters, 7}, {&m_digits, 10}}) {
        for (int nGlyph = 0; nGlyph < nGlyphs; ++nGlyph) {
            for (const auto& [y, bInk] : {std::pair{1, false}, {2, true}, {24, true}, {25, false}}) {
                bool bFound = false;
                for (int x = pStrip->Left(nGlyph); x < pStrip->Left(nGlyph + 1); ++x) {
                    bFound = bFound || pStrip->m_color.At(x, y).blue < 128;
                }
                EXPECT_EQ(bFound, bInk) << "glyph " << nGlyph << " row " << y;
            }
        }
    }
}

}  // namespace
