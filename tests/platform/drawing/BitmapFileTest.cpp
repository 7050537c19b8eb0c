#include "platform/drawing/Bitmap.h"
#include "platform/drawing/BitmapWriter.h"
#include "platform/drawing/MemoryDc.h"
#include "platform/drawing/Pixel.h"
#include "support/ScratchDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <tuple>

namespace {

using bmp::Packed;
using bmp::Picture;
using bmp::Rgb;

class BitmapFile : public testing::Test {
protected:
    bool Load(const std::string& bytes) { return m_bitmap.LoadFile(m_directory.Write("a.bmp", bytes)); }

    // 0xRRGGBB.
    std::uint32_t At(int x, int y) const { return m_bitmap.GetSurface().GetRow(y)[x] & 0xFFFFFF; }
    // All pixels are those that color(x, y) gives.
    template <class Color>
    void Expect(int cx, int cy, Color color) const {
        ASSERT_TRUE(m_bitmap.GetSize().cx == cx && m_bitmap.GetSize().cy == cy);
        for (int y = 0; y < cy; ++y) {
            for (int x = 0; x < cx; ++x) {
                ASSERT_EQ(At(x, y), Packed(color(x, y))) << x << "," << y;
            }
        }
    }

    CScratchDirectory m_directory;
    CBitmap m_bitmap;
};

// Widths that end within a byte and within the padding of a row, both orders of the rows, both headers.
TEST_F(BitmapFile, ReadsPalettes) {
    const auto index = [](int x, int y) { return static_cast<std::uint32_t>(x * 13 + y * 29 + x * y) % 16; };
    for (Picture picture : {Picture{.nWidth = 5, .nHeight = 4, .nBits = 4},
                            {.nWidth = 9, .nHeight = -4, .nBits = 4},
                            {.nWidth = 3, .nHeight = 4, .nBits = 8, .bOldHeader = true}}) {
        for (std::uint32_t i = 0; i < 1U << picture.nBits; ++i) {
            picture.palette.push_back({static_cast<std::uint8_t>(255 - i), static_cast<std::uint8_t>(i * 7),
                                       static_cast<std::uint8_t>(i * 31 + 9)});
        }
        ASSERT_TRUE(Load(Encode(picture, Pack(picture, index))));
        Expect(picture.nWidth, 4, [&](int x, int y) { return picture.palette[index(x, y)]; });
    }
}

// Channel by channel, none, the lowest, the middle and full brightness: 255 is full, whatever the bits.
TEST_F(BitmapFile, ReadsSixteenBits) {
    const std::vector<std::uint32_t> masks565{0xF800, 0x07E0, 0x001F};
    for (const auto& [masks, stored, colors] :
         {std::tuple{std::vector<std::uint32_t>{}, std::array{0x0421U, 0x4210U, 0x7C00U, 0x03E0U, 0x001FU},
                     std::array{0x080808U, 0x848484U, 0xFF0000U, 0x00FF00U, 0x0000FFU}},
          {masks565,
           {0x0821U, 0x8410U, 0xF800U, 0x07E0U, 0x001FU},
           {0x080408U, 0x848284U, 0xFF0000U, 0x00FF00U, 0x0000FFU}}}) {
        const Picture picture{
            .nWidth = 5, .nHeight = 1, .nBits = 16, .compression = masks.empty() ? 0U : 3U, .masks = masks};
        const auto value = [&values = stored](int x, int) { return values[static_cast<std::size_t>(x)]; };
        ASSERT_TRUE(Load(Encode(picture, Pack(picture, value))));
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(At(x, 0), colors[static_cast<std::size_t>(x)]) << masks.size() << " masks, " << x;
        }
    }
}

TEST_F(BitmapFile, ReadsRuns) {
    const std::vector<Rgb> palette{{10, 11, 12}, {20, 21, 22}, {30, 31, 32}, {40, 41, 42}};
    const Picture bytes{.nWidth = 5, .nHeight = 3, .nBits = 8, .compression = 1, .palette = palette};
    // Lowest row: a run of 5. Middle: two skipped, three as they are. Top: a run of 2, the rest left out.
    const char runs[] = {5, 1, 0, 0, 0, 2, 2, 0, 0, 3, 3, 2, 1, 0, 0, 0, 2, 3, 0, 1};
    ASSERT_TRUE(Load(Encode(bytes, {runs, sizeof runs})));
    const std::size_t expected[3][5] = {{3, 3, 0, 0, 0}, {0, 0, 3, 2, 1}, {1, 1, 1, 1, 1}};
    Expect(5, 3, [&](int x, int y) { return palette[expected[y][x]]; });
}

TEST_F(BitmapFile, MissingOrCutShortIsRefused) {
    for (const CString& strFile : {m_directory.Path("nothing.bmp"), m_directory.Path(""), CString()}) {
        EXPECT_FALSE(m_bitmap.LoadFile(strFile)) << strFile;
    }
    const std::string whole = bmp::Encode24(7, 5, [](int, int) { return Rgb{1, 2, 3}; });
    const Picture runs{.nWidth = 3, .nHeight = 1, .nBits = 8, .compression = 1, .palette = {{1, 2, 3}}};
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
    const Picture runs{
        .nWidth = 3, .nHeight = 2, .nBits = 8, .compression = 1, .palette = {{1, 2, 3}, {4, 5, 6}}};
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
