#include "widgets/TestArtwork.h"

#include "platform/base/String.h"
#include "widgets/WidgetStage.h"

#include <algorithm>

namespace TestArtwork {

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr int STRIP_HEIGHT = 30;
constexpr int GLYPH_HEIGHT = 27;
// Rows below the glyphs, which no draw may show.
constexpr COLORREF BELOW = 0x050505;

// With white text a strip shows the blue channel of its bevel file as grey: 255 - trunc(255 x (1 - v / 256))
// is v for every v above 0.
template <std::size_t N>
void WriteStrip(const CString& strName, const std::array<int, N>& edges, COLORREF (*pfnColor)(int),
                const std::function<bool(int k, int x, int y)>& fnInk) {
    const auto isInk = [&](int x, int y) {
        const auto itNext = std::upper_bound(edges.begin(), edges.end(), x);
        return fnInk(static_cast<int>(itNext - edges.begin()) - 1, x - *(itNext - 1), y);
    };
    WriteBitmap(strName + "Clr.bmp", edges.back(), STRIP_HEIGHT,
                [&](int x, int y) { return isInk(x, y) ? 0 : WHITE; });
    WriteBitmap(strName + "Bev.bmp", edges.back(), STRIP_HEIGHT, [&](int x, int y) {
        if (y >= GLYPH_HEIGHT) {
            return BELOW;
        }
        const auto itNext = std::upper_bound(edges.begin(), edges.end(), x);
        return isInk(x, y) ? pfnColor(static_cast<int>(itNext - edges.begin()) - 1) : WHITE;
    });
}

}  // namespace

void Write(Glyphs glyphs) {
    const bool bBoxes = glyphs == Glyphs::Boxes;
    // Letters are cleared up to column 73 only, which the sharp of C# and G# passes by three columns.
    WriteStrip("Notes", LETTER_EDGES, LetterColor, [&](int, int x, int) { return bBoxes || x < 22; });
    // The plus is cleared on 20 by 20 pixels, a digit by the next one, which may be 24 wide.
    WriteStrip("Num", DIGIT_EDGES, DigitColor,
               [&](int k, int x, int y) { return bBoxes || (k == PLUS ? x < 20 && y < 20 : x < 24); });
    WriteBitmap("Label.bmp", 236, 69, LabelAt);
    WriteBitmap("Circle.bmp", 58, 23, [](int x, int y) { return IsHub(x, y) ? HUB_COLOR : WHITE; });
    WriteBitmap("gBar.bmp", 464, 5, BarAt);
    WriteBitmap("gTic.bmp", 9, 24, TicAt);
    for (int i = 1; i <= 3; ++i) {
        WriteBitmap(FormatText("string%d.bmp", i), 20, STRING_HEIGHT,
                    [i](int x, int y) { return StringAt(i, x, y); });
    }
}

}  // namespace TestArtwork
