#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// A BMP file of 24 bits a pixel, read byte by byte.

struct Pixel {
    int red = 0;
    int green = 0;
    int blue = 0;
    friend bool operator==(const Pixel&, const Pixel&) = default;
};
inline constexpr Pixel WHITE{255, 255, 255};
constexpr bool IsGrey(const Pixel& pixel) {
    return pixel.red == pixel.green && pixel.green == pixel.blue;
}

struct BitmapFile {
    int nWidth = 0;
    int nHeight = 0;
    std::vector<Pixel> pixels;  // from the top

    Pixel At(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(nWidth) +
                         static_cast<std::size_t>(x));
    }
};

// A file of data/. Its width is 0 if the file isn't what it ought to be.
BitmapFile ReadBitmap(const std::string& strName);

// Where the fine dial cuts the glyphs: A B C D E F G sharp flat, and 0 to 9, percent, minus, plus.
inline constexpr std::array<int, 10> LETTER_EDGES{0, 32, 60, 90, 119, 146, 170, 200, 225, 249};
inline constexpr std::array<int, 14> DIGIT_EDGES{0,   26,  50,  75,  99,  125, 150,
                                                 175, 200, 225, 250, 286, 299, 321};
