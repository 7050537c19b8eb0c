#include "artwork/BitmapFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <span>

// The glyph strips and the dial that copies glyphs over one another, clearing no more ground than it must:
// after any step from one reading to another the pixels must be those of a fresh draw.

namespace {

constexpr int GLYPH_ROWS = 27;
constexpr int PERCENT = 10;
constexpr int MINUS = 11;
constexpr int PLUS = 12;

// Shape and bevel of one strip as one number for each pixel, so that two pixels are the same under every tint
// if their numbers are. 0 is the white ground.
class CStrip {
public:
    CStrip(const std::string& strColor, const std::string& strBevel, std::span<const int> edges)
        : m_color(ReadBitmap(strColor)), m_bevel(ReadBitmap(strBevel)), m_edges(edges) {}

    int Glyphs() const { return static_cast<int>(m_edges.size()) - 1; }
    int Left(int nGlyph) const { return m_edges[static_cast<std::size_t>(nGlyph)]; }
    int Width(int nGlyph) const { return Left(nGlyph + 1) - Left(nGlyph); }
    int Ink(int x, int y) const { return (255 - m_color.At(x, y).blue) * 256 + 255 - m_bevel.At(x, y).blue; }

    const BitmapFile m_color;
    const BitmapFile m_bevel;

private:
    std::span<const int> m_edges;
};

const CStrip& Letters() {
    static const CStrip strip("NotesClr.bmp", "NotesBev.bmp", LETTER_EDGES);
    return strip;
}

const CStrip& Digits() {
    static const CStrip strip("NumClr.bmp", "NumBev.bmp", DIGIT_EDGES);
    return strip;
}

// Rows 20 to 47 of the dial.
class CGround {
public:
    void Fill(int x, int cx, int cy) {
        for (int i = 0; i < cx * cy; ++i) {
            At(x + i % cx, i / cx) = 0;
        }
    }
    void Copy(const CStrip& strip, int nGlyph, int x) {
        for (int column = 0; column < strip.Width(nGlyph); ++column) {
            for (int y = 0; y < GLYPH_ROWS; ++y) {
                At(x + column, y) = strip.Ink(strip.Left(nGlyph) + column, y);
            }
        }
    }
    friend bool operator==(const CGround&, const CGround&) = default;

private:
    static constexpr int COLUMNS = 240;
    int& At(int x, int y) {
        const int n = y * COLUMNS + x;
        return m_ink.at(static_cast<std::size_t>(n));
    }
    std::vector<int> m_ink = std::vector<int>(static_cast<std::size_t>(COLUMNS) * GLYPH_ROWS);
};

struct Spelling {
    const char* szName;
    int nLetter;
    int nAccidental;  // -1: none
};
constexpr std::array<Spelling, 12> SPELLINGS{{{"C", 2, -1},
                                              {"C#", 2, 7},
                                              {"D", 3, -1},
                                              {"Eb", 4, 8},
                                              {"E", 4, -1},
                                              {"F", 5, -1},
                                              {"F#", 5, 7},
                                              {"G", 6, -1},
                                              {"G#", 6, 7},
                                              {"A", 0, -1},
                                              {"Bb", 1, 8},
                                              {"B", 1, -1}}};

void StepName(CGround& ground, const Spelling& spelling) {
    ground.Fill(40, 34, GLYPH_ROWS);
    ground.Copy(Letters(), spelling.nLetter, 22);
    if (spelling.nAccidental >= 0) {
        ground.Copy(Letters(), spelling.nAccidental, 22 + Letters().Width(spelling.nLetter));
    }
}

CGround FreshNumber(int nCents) {
    CGround ground;
    ground.Copy(Digits(), nCents < 0 ? MINUS : PLUS, nCents < 0 ? 125 : 119);
    ground.Copy(Digits(), std::abs(nCents) / 10, 143);
    ground.Copy(Digits(), std::abs(nCents) % 10, 168);
    ground.Copy(Digits(), PERCENT, 195);
    return ground;
}

void StepNumber(CGround& ground, int nFrom, int nTo) {
    if (nTo == 0 || (nTo > 0 && nFrom < 0)) {
        ground.Copy(Digits(), PLUS, 119);
    } else if (nTo < 0 && nFrom >= 0) {
        ground.Fill(119, 20, 20);
        ground.Copy(Digits(), MINUS, 125);
    }
    const int nSize = std::abs(nTo);
    if (nSize >= 10 ? nSize / 10 != nFrom / 10 : std::abs(nFrom) >= 10) {
        ground.Copy(Digits(), nSize / 10, 143);
    }
    ground.Copy(Digits(), nSize % 10, 168);
}

TEST(GlyphStrips, AreOfTheSizeThatTheEdgesAsk) {
    for (const CStrip* pStrip : {&Letters(), &Digits()}) {
        EXPECT_EQ(pStrip->m_color.nWidth, pStrip->Left(pStrip->Glyphs()));
        EXPECT_EQ(pStrip->m_color.nHeight, GLYPH_ROWS);
        EXPECT_EQ(pStrip->m_bevel.nWidth, pStrip->m_color.nWidth);
        EXPECT_EQ(pStrip->m_bevel.nHeight, GLYPH_ROWS);
    }
}

TEST(GlyphStrips, EveryGlyphStandsFreeInItsCell) {
    for (const CStrip* pStrip : {&Letters(), &Digits()}) {
        for (int nGlyph = 0; nGlyph < pStrip->Glyphs(); ++nGlyph) {
            SCOPED_TRACE(nGlyph);
            int nBody = 0;
            for (int y = 0; y < GLYPH_ROWS; ++y) {
                for (int x = pStrip->Left(nGlyph); x < pStrip->Left(nGlyph + 1); ++x) {
                    nBody += pStrip->m_color.At(x, y).blue < 32 ? 1 : 0;
                }
                EXPECT_EQ(pStrip->Ink(pStrip->Left(nGlyph), y), 0);
                EXPECT_EQ(pStrip->Ink(pStrip->Left(nGlyph + 1) - 1, y), 0);
            }
            EXPECT_GT(nBody, 40);
        }
    }
}

TEST(GlyphStrips, ShadeLiesOnTheGlyphsOnly) {
    for (const CStrip* pStrip : {&Letters(), &Digits()}) {
        int nShaded = 0;
        for (int y = 0; y < GLYPH_ROWS; ++y) {
            for (int x = 0; x < pStrip->m_color.nWidth; ++x) {
                const Pixel color = pStrip->m_color.At(x, y);
                const Pixel bevel = pStrip->m_bevel.At(x, y);
                EXPECT_TRUE(color.red == color.blue && color.green == color.blue);
                EXPECT_TRUE(bevel.red == bevel.blue && bevel.green == bevel.blue);
                EXPECT_TRUE(color != WHITE || bevel == WHITE) << x << ", " << y;
                nShaded += bevel.blue < 192 ? 1 : 0;
            }
        }
        EXPECT_GT(nShaded, 100);
    }
}

TEST(GlyphStrips, CapitalsAndDigitsShareBaselineAndHeight) {
    const auto isRowInked = [](const CStrip& strip, int nGlyph, int y) {
        for (int x = strip.Left(nGlyph); x < strip.Left(nGlyph + 1); ++x) {
            if (strip.m_color.At(x, y).blue < 128) {
                return true;
            }
        }
        return false;
    };
    const auto check = [&](const CStrip& strip, int nGlyph) {
        SCOPED_TRACE(nGlyph);
        EXPECT_FALSE(isRowInked(strip, nGlyph, 1));
        EXPECT_TRUE(isRowInked(strip, nGlyph, 2));
        EXPECT_TRUE(isRowInked(strip, nGlyph, 24));
        EXPECT_FALSE(isRowInked(strip, nGlyph, 25));
    };
    for (int nLetter = 0; nLetter < 7; ++nLetter) {
        check(Letters(), nLetter);
    }
    for (int nDigit = 0; nDigit < 10; ++nDigit) {
        check(Digits(), nDigit);
    }
}

TEST(GlyphStrips, NoNameLeavesInkOfTheLastOne) {
    for (const Spelling& from : SPELLINGS) {
        for (const Spelling& to : SPELLINGS) {
            CGround fresh;
            StepName(fresh, to);
            CGround ground;
            StepName(ground, from);
            StepName(ground, to);
            EXPECT_EQ(ground, fresh) << "from " << from.szName << " to " << to.szName;
        }
    }
}

TEST(GlyphStrips, NoNumberLeavesInkOfTheLastOne) {
    constexpr int FURTHEST = 52;
    std::map<int, CGround> fresh;
    for (int nCents = -FURTHEST; nCents <= FURTHEST; ++nCents) {
        fresh.emplace(nCents, FreshNumber(nCents));
    }
    for (const auto& [nFrom, start] : fresh) {
        for (const auto& [nTo, end] : fresh) {
            CGround ground = start;
            if (nTo != nFrom) {
                StepNumber(ground, nFrom, nTo);
            }
            EXPECT_TRUE(ground == end) << "from " << nFrom << " to " << nTo;
        }
    }
}

}  // namespace
