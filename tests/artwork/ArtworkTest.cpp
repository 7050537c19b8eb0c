#include "platform/drawing/Bitmap.h"
#include "widgets/NeedleGeometry.h"
#include "widgets/TestArtwork.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <tuple>

// What the widgets' geometry asks of the pictures in data/. Positions are those of the fine dial, the coarse
// strip and the string diagram. That no reading leaves ink of the last one is proved with the dial itself.

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr double PI = 3.14159265358979;

class CPictureFile {
public:
    explicit CPictureFile(const CString& strName) {
        EXPECT_TRUE(m_bitmap.LoadFile(CString(FRETVANE_SOURCE_DIR) + "/data/" + strName)) << strName;
    }
    SIZE GetSize() const { return m_bitmap.GetSize(); }
    COLORREF At(int x, int y) const {
        const bool bInside = PtInRect({0, 0, GetSize().cx, GetSize().cy}, {x, y});
        return bInside ? ColorFromPixel(m_bitmap.GetSurface().GetRow(y)[x]) : CLR_INVALID;
    }
    int GreenAt(int x, int y) const { return GetGreen(At(x, y)); }

private:
    CBitmap m_bitmap;
};

bool IsGrey(COLORREF clr) {
    return GetRed(clr) == GetGreen(clr) && GetGreen(clr) == GetBlue(clr);
}

TEST(Artwork, PicturesHaveTheirSizes) {
    using Case = std::tuple<CString, int, int>;
    for (const auto& [strName, cx, cy] :
         {Case{"NotesClr.bmp", 249, 27}, Case{"NotesBev.bmp", 249, 27}, Case{"NumClr.bmp", 321, 27},
          Case{"NumBev.bmp", 321, 27}, Case{"Label.bmp", 236, 69}, Case{"Circle.bmp", 59, 23},
          Case{"gBar.bmp", 464, 5}, Case{"gTic.bmp", 9, 24}, Case{"string1.bmp", 9, 46},
          Case{"string2.bmp", 9, 46}, Case{"string3.bmp", 9, 46}, Case{"FVLogo.bmp", 121, 37},
          Case{"FVLogoOp.bmp", 121, 37}}) {
        const SIZE size = CPictureFile(strName).GetSize();
        EXPECT_EQ(size.cx, cx) << strName;
        EXPECT_EQ(size.cy, cy) << strName;
    }
}

TEST(GlyphStrips, EveryGlyphStandsFreeInItsCellWithShadeOnItAlone) {
    for (const auto& [strName, strip] :
         {std::pair<CString, TestArtwork::Strip>{"Notes", TestArtwork::LETTERS},
          {"Num", TestArtwork::NUMERALS}}) {
        const CPictureFile shape(strName + "Clr.bmp");
        const CPictureFile shade(strName + "Bev.bmp");
        int nShaded = 0;
        for (std::size_t k = 0; k < strip.glyphs.size(); ++k) {
            SCOPED_TRACE(strip.glyphs[k]);
            const bool bTall = std::isalnum(strip.glyphs[k]) != 0 && strip.glyphs[k] != 'b';
            int nBody = 0;
            for (int y = 0; y < shape.GetSize().cy; ++y) {
                bool bInk = false;
                for (int x = strip.edges[k]; x < strip.edges[k + 1]; ++x) {
                    const COLORREF clrShape = shape.At(x, y);
                    const COLORREF clrShade = shade.At(x, y);
                    EXPECT_TRUE(IsGrey(clrShape) && IsGrey(clrShade));
                    EXPECT_TRUE(clrShape != WHITE || clrShade == WHITE) << x << ", " << y;
                    bInk = bInk || GetGreen(clrShape) < 128;
                    nBody += GetGreen(clrShape) < 32 ? 1 : 0;
                    nShaded += GetGreen(clrShade) < 192 ? 1 : 0;
                }
                // Capitals and digits share baseline and height.
                if (bTall && (y <= 2 || y >= 24)) {
                    EXPECT_EQ(bInk, y == 2 || y == 24) << y;
                }
                EXPECT_EQ(shape.At(strip.edges[k], y), WHITE);
                EXPECT_EQ(shape.At(strip.edges[k + 1] - 1, y), WHITE);
            }
            EXPECT_GT(nBody, 40);
        }
        EXPECT_GT(nShaded, 100);
    }
}

class DialScale : public testing::Test {
protected:
    // Least light within one pixel of where the needle, made longer, would point.
    int Darkest(int nCents, double dRadius) const {
        const double dAngle = nCents * 0.6 * PI / 180.0;
        const int x = 118 + static_cast<int>(std::lround(std::sin(dAngle) * dRadius));
        const int y = 211 - static_cast<int>(std::lround(std::cos(dAngle) * dRadius));
        int nLeast = 255;
        for (int i = 0; i < 9; ++i) {
            nLeast = std::min(nLeast, m_label.GreenAt(x - 1 + i % 3, y - 1 + i / 3));
        }
        return nLeast;
    }

    const CPictureFile m_label{"Label.bmp"};
};

TEST_F(DialScale, TheTipPointsAtTheTicks) {
    // The longest ticks reach down to the tip's round end, 2.5 pixels beyond a radius of 182, and never under
    // it; those of the odd fives three pixels less.
    for (int nCents = -50; nCents <= 50; nCents += 5) {
        const bool bLong = nCents % 10 == 0 || std::abs(nCents) == 25;
        EXPECT_LT(Darkest(nCents, 191.0), 110) << nCents;
        EXPECT_EQ(Darkest(nCents, 183.0), 255) << nCents;
        if (bLong) {
            EXPECT_LT(Darkest(nCents, 187.0), 130) << nCents;
        } else if (std::abs(nCents) > 5) {
            EXPECT_GT(Darkest(nCents, 186.0), 240) << nCents;
        }
    }
}

TEST_F(DialScale, NeighbouringCentsCanBeToldApart) {
    const auto tangent = [](double dCents) { return std::tan(dCents * 0.6 * PI / 180.0); };
    for (int nCents = -50; nCents < 50; ++nCents) {
        // One row of pixels across two ticks, in the middle of the shortest: there is lighter ground between.
        const int y = static_cast<int>(211.5 - 194.0 / std::hypot(1.0, tangent(nCents + 0.5)));
        const auto columnOf = [&](int n) { return static_cast<int>(118.5 + (211.5 - y - 0.5) * tangent(n)); };
        const int xSecond = columnOf(nCents + 1);
        int x = columnOf(nCents);
        const int nTicks = std::max(m_label.GreenAt(x, y), m_label.GreenAt(xSecond, y));
        int nBetween = 0;
        while (++x < xSecond) {
            nBetween = std::max(nBetween, m_label.GreenAt(x, y));
        }
        EXPECT_GT(nBetween, nTicks + 24) << nCents;
    }
}

TEST(Hub, IsOnePieceOfGreyMetalOverTheFootOfTheNeedleAtEveryAngle) {
    const CPictureFile hub("Circle.bmp");
    for (int y = 0; y < hub.GetSize().cy; ++y) {
        int nRuns = 0;
        for (int x = 0; x < hub.GetSize().cx; ++x) {
            const bool bMetal = hub.At(x, y) != WHITE;
            nRuns += bMetal && (x == 0 || hub.At(x - 1, y) == WHITE) ? 1 : 0;
            EXPECT_TRUE(IsGrey(hub.At(x, y)));
        }
        EXPECT_EQ(nRuns, 1) << y;  // white inside would be a hole
    }
    EXPECT_EQ(hub.At(0, 0), WHITE);
    for (int nCents = -52; nCents <= 52; ++nCents) {
        const POINT ptFoot = GetNeedleGeometry(nCents).ptBase;
        for (int i = 0; i < 25; ++i) {
            const int dx = i % 5 - 2;
            const int dy = i / 5 - 2;
            const COLORREF clr = hub.At(ptFoot.x - 91 + dx, ptFoot.y - 232 + dy);
            EXPECT_TRUE(dx * dx + dy * dy > 6 || clr != WHITE) << nCents;
        }
    }
}

TEST(CoarseScale, ATickLeavesItsOuterColumnsToTheTint) {
    const CPictureFile tick("gTic.bmp");
    const CPictureFile bar("gBar.bmp");
    for (int y = 0; y < tick.GetSize().cy; ++y) {
        const bool bOnBar = y >= 3 && y < 8;
        for (int x = 0; x < tick.GetSize().cx; ++x) {
            const bool bOuter = x < 2 || x >= 7;
            EXPECT_EQ(tick.At(x, y) == WHITE, bOuter && !bOnBar) << x << ", " << y;
        }
        if (bOnBar) {
            EXPECT_EQ(tick.At(0, y), bar.At(100, y - 3));  // the bar goes on under the tick
            EXPECT_NE(bar.At(100, y - 3), WHITE);
        }
    }
}

TEST(Strings, AreWoundPlainAndPale) {
    const CPictureFile wound("string3.bmp");
    const CPictureFile plain("string2.bmp");
    const CPictureFile pale("string1.bmp");
    constexpr int MIDDLE = 4;
    int nSwing = 0;
    // Below the post; a turn takes three rows.
    for (int y = 10; y + 3 < wound.GetSize().cy; ++y) {
        EXPECT_EQ(wound.At(MIDDLE, y), wound.At(MIDDLE, y + 3));
        EXPECT_EQ(plain.At(MIDDLE, y), plain.At(MIDDLE, y + 1));
        nSwing = std::max(nSwing, std::abs(wound.GreenAt(MIDDLE, y) - wound.GreenAt(MIDDLE, y + 1)));
        EXPECT_TRUE(IsGrey(pale.At(MIDDLE, y)));
        EXPECT_GE(pale.GreenAt(MIDDLE, y), 140);
    }
    EXPECT_GT(nSwing, 40);
}

double Luminance(COLORREF clr) {
    const auto linear = [](int n) { return std::pow(n / 255.0, 2.2); };
    return 0.2126 * linear(GetRed(clr)) + 0.7152 * linear(GetGreen(clr)) + 0.0722 * linear(GetBlue(clr));
}

TEST(LogoPicture, TheNameStandsOutFromLightAndDarkFaces) {
    const CPictureFile base("FVLogo.bmp");
    const CPictureFile opacity("FVLogoOp.bmp");
    int nOpaque = 0;
    int nClear = 0;
    for (int y = 0; y < base.GetSize().cy; ++y) {
        for (int x = 36; x < base.GetSize().cx; ++x) {
            nClear += opacity.GreenAt(x, y) == 255 ? 1 : 0;
            if (opacity.GreenAt(x, y) != 0) {
                continue;
            }
            ++nOpaque;
            // Of its luminance at least 2.6 to 1 from that of each face, with the 0.05 of flare: of grey
            // levels 212 and 43.
            EXPECT_NEAR(Luminance(base.At(x, y)), 0.178, 0.034) << x << ", " << y;
        }
    }
    EXPECT_GT(nOpaque, 200);
    EXPECT_GT(nClear, 1000);
}

}  // namespace
