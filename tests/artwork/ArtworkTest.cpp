#include "artwork/BitmapFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>

// What the widgets' geometry asks of the other pictures. Positions are those of the fine dial, the coarse
// strip and the string diagram.

namespace {

// The direction of the needle, as the dial works it out.
double NeedleAngle(int nCents) {
    return nCents * -0.6000000238418579 * 0.0174525 + 3.1415;
}

TEST(Artwork, PicturesHaveTheirSizes) {
    struct Size {
        const char* szName;
        int nWidth;
        int nHeight;
    };
    for (const Size& size :
         {Size{"Label.bmp", 236, 69}, Size{"Circle.bmp", 59, 23}, Size{"gBar.bmp", 464, 5},
          Size{"gTic.bmp", 9, 24}, Size{"string1.bmp", 9, 46}, Size{"string2.bmp", 9, 46},
          Size{"string3.bmp", 9, 46}, Size{"FVLogo.bmp", 121, 37}, Size{"FVLogoOp.bmp", 121, 37}}) {
        const BitmapFile bitmap = ReadBitmap(size.szName);
        EXPECT_EQ(bitmap.nWidth, size.nWidth) << size.szName;
        EXPECT_EQ(bitmap.nHeight, size.nHeight) << size.szName;
    }
}

class DialScale : public testing::Test {
protected:
    // Least light of green within one pixel of where the needle, made longer, would point.
    int Darkest(int nCents, double fRadius) const {
        const int x = 120 + static_cast<int>(std::lround(std::sin(NeedleAngle(nCents)) * fRadius)) - 2;
        const int y = 270 + static_cast<int>(std::lround(std::cos(NeedleAngle(nCents)) * fRadius)) - 59;
        int nLeast = 255;
        for (int i = 0; i < 9; ++i) {
            nLeast = std::min(nLeast, m_label.At(x - 1 + i % 3, y - 1 + i / 3).green);
        }
        return nLeast;
    }

    const BitmapFile m_label = ReadBitmap("Label.bmp");
};

TEST_F(DialScale, TheTipPointsAtTheTicks) {
    // The longest ticks reach down to the tip, those of the odd fives three pixels less.
    for (int nCents = -50; nCents <= 50; nCents += 5) {
        const bool bLong = nCents % 10 == 0 || std::abs(nCents) == 25;
        EXPECT_LT(Darkest(nCents, 191.0), 110) << nCents;
        if (bLong) {
            EXPECT_LT(Darkest(nCents, 187.0), 130) << nCents;
        } else if (std::abs(nCents) > 5) {
            EXPECT_GT(Darkest(nCents, 186.0), 240) << nCents;
        }
    }
}

TEST_F(DialScale, TheTipNeverCoversIt) {
    // The tip's round end reaches 2.5 pixels beyond a radius of 182.
    int nInk = 0;
    for (int y = 0; y < m_label.nHeight; ++y) {
        for (int x = 0; x < m_label.nWidth; ++x) {
            if (m_label.At(x, y) != WHITE) {
                ++nInk;
                EXPECT_GT(std::hypot(x + 2 - 120, y + 59 - 270), 184.5) << x << ", " << y;
            }
        }
    }
    EXPECT_GT(nInk, 1500);
}

TEST_F(DialScale, NeighbouringCentsCanBeToldApart) {
    const auto tangent = [](double fCents) { return std::tan(fCents * 0.6 * 3.14159265358979 / 180.0); };
    for (int nCents = -50; nCents < 50; ++nCents) {
        // One row of pixels across two ticks, in the middle of the shortest: there is lighter ground between.
        const int y = static_cast<int>(211.5 - 194.0 / std::hypot(1.0, tangent(nCents + 0.5)));
        const auto columnOf = [&](int n) { return static_cast<int>(118.5 + (211.5 - y - 0.5) * tangent(n)); };
        const int xFirst = columnOf(nCents);
        const int xSecond = columnOf(nCents + 1);
        const int nTicks = std::max(m_label.At(xFirst, y).green, m_label.At(xSecond, y).green);
        int nBetween = 0;
        for (int x = xFirst + 1; x < xSecond; ++x) {
            nBetween = std::max(nBetween, m_label.At(x, y).green);
        }
        EXPECT_GT(nBetween, nTicks + 24) << nCents;
    }
}

TEST(Hub, CoversTheFootOfTheNeedleAtEveryAngle) {
    const BitmapFile hub = ReadBitmap("Circle.bmp");
    for (int nCents = -52; nCents <= 52; ++nCents) {
        const int xFoot = 120 + static_cast<int>(std::sin(NeedleAngle(nCents)) * 30.0) - 91;
        const int yFoot = 270 + static_cast<int>(std::cos(NeedleAngle(nCents)) * 30.0) - 232;
        for (int i = 0; i < 25; ++i) {
            const int dx = i % 5 - 2;
            const int dy = i / 5 - 2;
            if (dx * dx + dy * dy <= 6) {
                EXPECT_NE(hub.At(xFoot + dx, yFoot + dy), WHITE) << nCents;
            }
        }
    }
}

TEST(Hub, IsOnePieceOfGreyMetal) {
    const BitmapFile hub = ReadBitmap("Circle.bmp");
    for (int y = 0; y < hub.nHeight; ++y) {
        int nRuns = 0;
        for (int x = 0; x < hub.nWidth; ++x) {
            const bool bMetal = hub.At(x, y) != WHITE;
            nRuns += bMetal && (x == 0 || hub.At(x - 1, y) == WHITE) ? 1 : 0;
            EXPECT_TRUE(IsGrey(hub.At(x, y)));
        }
        EXPECT_EQ(nRuns, 1) << y;  // white inside would be a hole
    }
    EXPECT_EQ(hub.At(0, 0), WHITE);
}

TEST(CoarseScale, ATickLeavesItsOuterColumnsToTheTint) {
    const BitmapFile tick = ReadBitmap("gTic.bmp");
    const BitmapFile bar = ReadBitmap("gBar.bmp");
    for (int y = 0; y < tick.nHeight; ++y) {
        const bool bOnBar = y >= 3 && y < 8;
        for (int x = 0; x < tick.nWidth; ++x) {
            const bool bOuter = x < 2 || x >= 7;
            EXPECT_EQ(tick.At(x, y) == WHITE, bOuter && !bOnBar) << x << ", " << y;
        }
        if (bOnBar) {
            EXPECT_EQ(tick.At(0, y), bar.At(100, y - 3));  // the bar goes on under the tick
        }
    }
    for (const Pixel& pixel : bar.pixels) {
        EXPECT_NE(pixel, WHITE);
    }
}

TEST(Strings, AreWoundPlainAndPale) {
    const BitmapFile wound = ReadBitmap("string3.bmp");
    const BitmapFile plain = ReadBitmap("string2.bmp");
    constexpr int MIDDLE = 4;
    constexpr int POST_END = 10;
    constexpr int TURN = 3;
    int nSwing = 0;
    for (int y = POST_END; y + TURN < wound.nHeight; ++y) {
        EXPECT_EQ(wound.At(MIDDLE, y), wound.At(MIDDLE, y + TURN));
        EXPECT_EQ(plain.At(MIDDLE, y), plain.At(MIDDLE, y + 1));
        nSwing = std::max(nSwing, std::abs(wound.At(MIDDLE, y).green - wound.At(MIDDLE, y + 1).green));
    }
    EXPECT_GT(nSwing, 40);
    for (const Pixel& pixel : ReadBitmap("string1.bmp").pixels) {
        EXPECT_TRUE(IsGrey(pixel));
        EXPECT_GE(pixel.green, 140);
    }
}

double Luminance(const Pixel& pixel) {
    const auto linear = [](int n) {
        const double f = n / 255.0;
        return f <= 0.04045 ? f / 12.92 : std::pow((f + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(pixel.red) + 0.7152 * linear(pixel.green) + 0.0722 * linear(pixel.blue);
}

TEST(LogoPicture, TheNameStandsOutFromLightAndDarkFaces) {
    const BitmapFile base = ReadBitmap("FVLogo.bmp");
    const BitmapFile opacity = ReadBitmap("FVLogoOp.bmp");
    int nOpaque = 0;
    int nClear = 0;
    for (int y = 0; y < base.nHeight; ++y) {
        for (int x = 36; x < base.nWidth; ++x) {
            nClear += opacity.At(x, y).blue == 255 ? 1 : 0;
            if (opacity.At(x, y).blue != 0) {
                continue;
            }
            ++nOpaque;
            for (const Pixel& face : {Pixel{240, 240, 240}, Pixel{212, 208, 200}, Pixel{43, 43, 43}}) {
                const double a = Luminance(base.At(x, y)) + 0.05;
                const double b = Luminance(face) + 0.05;
                EXPECT_GT(std::max(a, b) / std::min(a, b), 2.6) << x << ", " << y;
            }
        }
    }
    EXPECT_GT(nOpaque, 200);
    EXPECT_GT(nClear, 1000);
}

TEST(Icons, HaveTheSidesThatTheirNamesTell) {
    for (const int nSide : {16, 24, 32, 48, 64, 128, 256}) {
        std::ifstream stream(
            std::string(FRETVANE_SOURCE_DIR) + "/data/icons/fretvane-" + std::to_string(nSide) + ".png",
            std::ios::binary);
        std::array<char, 24> head{};
        ASSERT_TRUE(stream.read(head.data(), head.size())) << nSide;
        const auto sideAt = [&](std::size_t n) {
            return static_cast<unsigned char>(head.at(n + 2)) << 8 |
                   static_cast<unsigned char>(head.at(n + 3));
        };
        EXPECT_EQ(sideAt(16), nSide);
        EXPECT_EQ(sideAt(20), nSide);
    }
}

}  // namespace
