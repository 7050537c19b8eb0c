#include "platform/drawing/Bitmap.h"
#include "platform/drawing/BitmapWriter.h"
#include "platform/drawing/MemoryDc.h"
#include "platform/drawing/Pixel.h"
#include "support/ScratchDirectory.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using bmp::Picture;
using bmp::Rgb;

std::uint32_t Packed(const Rgb& rgb) {
    return std::uint32_t{rgb.red} << 16 | std::uint32_t{rgb.green} << 8 | rgb.blue;
}

class BitmapFile : public testing::Test {
protected:
    bool Load(const std::string& bytes) { return m_bitmap.LoadFile(m_directory.Write("a.bmp", bytes)); }

    // 0xRRGGBB.
    std::uint32_t At(int x, int y) const { return m_bitmap.GetSurface().GetRow(y)[x] & 0xFFFFFF; }

    void ExpectSize(int cx, int cy) const {
        ASSERT_EQ(m_bitmap.GetSize().cx, cx);
        ASSERT_EQ(m_bitmap.GetSize().cy, cy);
    }

    // Widths that end within a byte and within the padding of a row, both orders of the rows.
    void ExpectPalettePicture(int nBits, bool bOldHeader) {
        for (const int nWidth : {1, 2, 3, 5, 7, 8, 9, 31, 33}) {
            for (const int nHeight : {5, -5}) {
                if (bOldHeader && nHeight < 0) {
                    continue;
                }
                Picture picture{.nWidth = nWidth,
                                .nHeight = nHeight,
                                .nBits = nBits,
                                .palette = {},
                                .masks = {},
                                .bOldHeader = bOldHeader};
                const std::uint32_t nColors = 1U << nBits;
                for (std::uint32_t i = 0; i < nColors; ++i) {
                    picture.palette.push_back({static_cast<std::uint8_t>(255 - i),
                                               static_cast<std::uint8_t>(i * 7),
                                               static_cast<std::uint8_t>(i * 31 + 9)});
                }
                const auto index = [nColors](int x, int y) {
                    return static_cast<std::uint32_t>(x * 13 + y * 29 + x * y) % nColors;
                };
                ASSERT_TRUE(Load(Encode(picture, Pack(picture, index))))
                    << nBits << " bits, width " << nWidth;
                ExpectSize(nWidth, 5);
                for (int y = 0; y < 5; ++y) {
                    for (int x = 0; x < nWidth; ++x) {
                        ASSERT_EQ(At(x, y), Packed(picture.palette[index(x, y)]))
                            << nBits << ": " << x << "," << y;
                    }
                }
            }
        }
    }

    CScratchDirectory m_directory;
    CBitmap m_bitmap;
};

TEST_F(BitmapFile, ReadsPalettes) {
    for (const int nBits : {1, 4, 8}) {
        ExpectPalettePicture(nBits, false);
    }
    ExpectPalettePicture(8, true);
}

TEST_F(BitmapFile, ReadsTrueColours) {
    const auto value = [](int x, int y) {
        return static_cast<std::uint32_t>(x * 0x123457 + y * 0x0F0E0D + 0x010203) & 0xFFFFFF;
    };
    for (const int nBits : {24, 32}) {
        for (const int nWidth : {1, 2, 3, 4, 17}) {
            for (const int nHeight : {4, -4}) {
                const Picture picture{
                    .nWidth = nWidth, .nHeight = nHeight, .nBits = nBits, .palette = {}, .masks = {}};
                // The fourth byte says nothing here.
                const auto stored = [value](int x, int y) { return value(x, y) | 0x5A000000U; };
                ASSERT_TRUE(Load(Encode(picture, Pack(picture, stored))));
                ExpectSize(nWidth, 4);
                for (int y = 0; y < 4; ++y) {
                    for (int x = 0; x < nWidth; ++x) {
                        ASSERT_EQ(At(x, y), value(x, y)) << nBits << ": " << x << "," << y;
                        ASSERT_EQ(m_bitmap.GetSurface().GetRow(y)[x] >> 24, 0xFFU);
                    }
                }
            }
        }
    }
}

// Every value of a short channel: 0 is 0, full is 255, and none is further than a rounding from its share.
TEST_F(BitmapFile, ReadsSixteenBits) {
    const Picture plain{.nWidth = 32, .nHeight = 3, .nBits = 16, .palette = {}, .masks = {}};
    ASSERT_TRUE(Load(Encode(
        plain, Pack(plain, [](int x, int y) { return static_cast<std::uint32_t>(x) << (10 - 5 * y); }))));
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 32; ++x) {
            const std::uint32_t pixel = At(x, y);
            EXPECT_EQ(pixel & ~(0xFF0000U >> 8 * y), 0U);
            EXPECT_NEAR(pixel >> (16 - 8 * y), x * 255.0 / 31, 1.0);
        }
        EXPECT_EQ(At(31, y), 0xFF0000U >> 8 * y);
    }
    const Picture masked{.nWidth = 64,
                         .nHeight = 1,
                         .nBits = 16,
                         .compression = 3,
                         .palette = {},
                         .masks = {0xF800, 0x07E0, 0x001F}};
    ASSERT_TRUE(Load(Encode(masked, Pack(masked, [](int x, int) {
                                return static_cast<std::uint32_t>(x << 5 | (x == 63 ? 0xF81F : 0));
                            }))));
    for (int x = 0; x < 63; ++x) {
        EXPECT_NEAR(At(x, 0) >> 8, x * 255.0 / 63, 1.0);
    }
    EXPECT_EQ(At(63, 0), 0xFFFFFFU);
}

TEST_F(BitmapFile, ReadsRuns) {
    const std::vector<Rgb> palette{{10, 11, 12}, {20, 21, 22}, {30, 31, 32}, {40, 41, 42}};
    const Picture bytes{
        .nWidth = 5, .nHeight = 3, .nBits = 8, .compression = 1, .palette = palette, .masks = {}};
    // Lowest row: a run of 5. Middle: two skipped, then three as they are. Top: a run of 2, the rest left
    // out.
    const std::string runs(
        "\x05\x01\x00\x00"
        "\x00\x02\x02\x00"
        "\x00\x03\x03\x02\x01\x00\x00\x00"
        "\x02\x03\x00\x01",
        20);
    ASSERT_TRUE(Load(Encode(bytes, runs)));
    ExpectSize(5, 3);
    const int expected[3][5] = {{3, 3, 0, 0, 0}, {0, 0, 3, 2, 1}, {1, 1, 1, 1, 1}};
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(At(x, y), Packed(palette[static_cast<std::size_t>(expected[y][x])])) << x << "," << y;
        }
    }
    const Picture halves{
        .nWidth = 4, .nHeight = 1, .nBits = 4, .compression = 2, .palette = palette, .masks = {}};
    ASSERT_TRUE(Load(Encode(halves, std::string("\x04\x12\x00\x01", 4))));
    for (int x = 0; x < 4; ++x) {
        EXPECT_EQ(At(x, 0), Packed(palette[static_cast<std::size_t>(1 + x % 2)]));
    }
}

TEST_F(BitmapFile, MissingOrCutShortIsRefused) {
    EXPECT_FALSE(m_bitmap.LoadFile(m_directory.Path("nothing.bmp")));
    EXPECT_FALSE(m_bitmap.LoadFile(m_directory.Path("")));
    EXPECT_FALSE(m_bitmap.LoadFile(""));

    const std::string whole = bmp::Encode24(7, 5, [](int, int) { return Rgb{1, 2, 3}; });
    const Picture runs{
        .nWidth = 3, .nHeight = 1, .nBits = 8, .compression = 1, .palette = {{1, 2, 3}}, .masks = {}};
    const std::string wholeRuns = Encode(runs, std::string("\x03\x00\x00\x01", 4));
    for (const std::string& bytes : {whole, wholeRuns}) {
        for (std::size_t n = 0; n < bytes.size(); ++n) {
            ASSERT_FALSE(Load(bytes.substr(0, n))) << n << " of " << bytes.size() << " bytes";
            ASSERT_TRUE(m_bitmap.GetSurface().IsEmpty());
        }
        ASSERT_TRUE(Load(bytes));
    }
    EXPECT_FALSE(Load("no bitmap at all, and long enough to hold every header that a bitmap has, and more"));
    EXPECT_TRUE(m_bitmap.GetSurface().IsEmpty()) << "a bitmap loaded before is gone too";
}

// Sizes that lie, offsets that lie, runs that leave the picture, and plain noise: refused or read, never a
// crash.
TEST_F(BitmapFile, HostileFilesDoNoHarm) {
    const std::string whole = bmp::Encode24(7, 5, [](int, int) { return Rgb{1, 2, 3}; });
    for (const std::uint32_t n : {0U, 0x7FFFFFFFU, 0x80000000U, 0x80000001U, 0xFFFFFFFFU, 0x8000U, 70000U}) {
        for (const std::size_t nField : {10U, 14U, 18U, 22U, 28U, 30U, 34U, 46U}) {
            std::string bytes = whole;
            for (std::size_t i = 0; i < 4; ++i) {
                bytes[nField + i] = static_cast<char>(n >> 8 * i & 0xFF);
            }
            Load(bytes);
        }
    }
    const Picture runs{.nWidth = 3,
                       .nHeight = 2,
                       .nBits = 8,
                       .compression = 1,
                       .palette = {{1, 2, 3}, {4, 5, 6}},
                       .masks = {}};
    Load(Encode(runs, std::string("\xFF\x01\xFF\x01\x00\x02\xFF\xFF\x00\xFF\x00", 11)));

    std::mt19937 random = Random(3);
    const std::string files[] = {whole, Encode(runs, std::string("\x03\x01\x00\x00\x03\x00\x00\x01", 8))};
    for (int i = 0; i < 600; ++i) {
        std::string bytes = files[random() % 2];
        for (int k = 0; k < 3; ++k) {
            // Mostly in the headers, where it hurts.
            bytes[random() % (k == 0 ? bytes.size() : 54)] = static_cast<char>(random());
        }
        if (Load(bytes)) {
            const SIZE size = m_bitmap.GetSize();
            ASSERT_TRUE(size.cx > 0 && size.cy > 0);
            ASSERT_EQ(m_bitmap.GetSurface().GetRow(size.cy - 1)[size.cx - 1] >> 24, 0xFFU);
        }
    }
}

}  // namespace
