#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Writes BMP files for the tests, from the definition of the format alone.

namespace bmp {

struct Rgb {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
};

// 0xRRGGBB, which is also how a file holds it, the lowest byte first.
constexpr std::uint32_t Packed(const Rgb& rgb) {
    return std::uint32_t{rgb.red} << 16 | std::uint32_t{rgb.green} << 8 | rgb.blue;
}

struct Picture {
    int nWidth = 0;
    int nHeight = 0;                        // rows are stored from the bottom; below 0: from the top
    int nBits = 24;                         // 1, 4, 8, 16, 24 or 32
    std::uint32_t compression = 0;          // 0 none, 1 and 2 runs of bytes and half bytes, 3 channel masks
    std::vector<Rgb> palette = {};          // for 1, 4 and 8 bits
    std::vector<std::uint32_t> masks = {};  // red, green, blue; for compression 3
    bool bOldHeader = false;                // the twelve bytes of the first form
};

using Values = std::function<std::uint32_t(int x, int y)>;

// The file for pixel data that already has its rows padded to four bytes.
std::string Encode(const Picture& picture, const std::string& data);

// The data of an uncompressed picture; value(x, y) is the palette index or the pixel as stored, y from the
// top.
std::string Pack(const Picture& picture, const Values& value);

// A picture of 24 bits in one call; color(x, y) with y from the top.
std::string Encode24(int nWidth, int nHeight, const std::function<Rgb(int, int)>& color);

}  // namespace bmp
