#pragma once

#include "platform/base/Types.h"

#include <string_view>
#include <vector>

// Bitmaps of the widgets' geometry whose every pixel is known, so that a picture tells which pixel of which
// file stands where. Drawn with white text.
namespace TestArtwork {

// Glyphs that fill their whole box, or glyphs with the blank margins that a draw over another glyph relies
// on.
enum class Glyphs { Boxes, WithMargins };

// Writes all files that the four widgets load into the current directory.
void Write(Glyphs glyphs);

// The glyphs of a strip, where the dial cuts each, and where the last one ends.
struct Strip {
    std::string_view glyphs;
    std::vector<int> edges;
};
inline const Strip LETTERS = {"ABCDEFG#b", {0, 32, 60, 90, 119, 146, 170, 200, 225, 249}};
inline const Strip NUMERALS = {"0123456789%-+",
                               {0, 26, 50, 75, 99, 125, 150, 175, 200, 225, 250, 286, 299, 321}};

constexpr COLORREF GlyphColor(char glyph) {
    return static_cast<COLORREF>(glyph) * 0x010101;
}
// The scale, 236 by 69, the hub, 58 by 23, opaque in its columns 10 to 47, the bar, 464 by 5, the tick, 9 by
// 24, and the pictures of the strings, 20 wide and of different heights.
constexpr COLORREF LabelAt(int x, int y) {
    return MakeColor(x, 100 + y, 0x33);
}
inline constexpr COLORREF HUB_COLOR = 0x302010;
constexpr bool IsHub(int x, int y) {
    return x >= 10 && x < 48 && y >= 0 && y < 23;
}
constexpr COLORREF BarAt(int x, int y) {
    return MakeColor(x / 2, 0x50 + y, 0x11);
}
constexpr COLORREF TicAt(int x, int y) {
    return MakeColor(0x10 + x, 0x20 + y, 0x99);
}
constexpr COLORREF StringAt(int nFile, int x, int y) {
    return MakeColor(0x40 * nFile, 0x60 + x, 0x80 + y);
}
constexpr int StringHeight(int nFile) {
    return nFile == 2 ? 30 : 40;
}

}  // namespace TestArtwork
