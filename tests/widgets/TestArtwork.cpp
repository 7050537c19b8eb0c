#include "widgets/TestArtwork.h"

#include "platform/base/String.h"
#include "widgets/WidgetStage.h"

#include <algorithm>

namespace TestArtwork {

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr int STRIP_HEIGHT = 30;  // three rows more than the dial shows

// With white text a strip shows the blue channel of its bevel file as grey: 255 - trunc(255 x (1 - v / 256))
// is v for every v above 0.
void WriteStrip(const CString& strName, const Strip& strip,
                const std::function<bool(char glyph, int x, int y)>& fnInk) {
    const auto write = [&](const char* szFile, bool bShape) {
        WriteBitmap(strName + szFile, strip.edges.back(), STRIP_HEIGHT, [&](int x, int y) {
            const auto itLeft = std::upper_bound(strip.edges.begin(), strip.edges.end(), x) - 1;
            const char glyph = strip.glyphs.at(static_cast<std::size_t>(itLeft - strip.edges.begin()));
            const COLORREF clrInk = bShape ? 0 : GlyphColor(glyph);
            return fnInk(glyph, x - *itLeft, y) ? clrInk : WHITE;
        });
    };
    write("Clr.bmp", true);
    write("Bev.bmp", false);
}

}  // namespace

void Write(Glyphs glyphs) {
    const bool bBoxes = glyphs == Glyphs::Boxes;
    // Letters are cleared up to column 73 only, which the sharp of C# and G# passes by three columns.
    WriteStrip("Notes", LETTERS, [&](char, int x, int) { return bBoxes || x < 22; });
    // The plus is cleared on 20 by 20 pixels, a digit by the next one, which may be 24 wide.
    WriteStrip("Num", NUMERALS, [&](char glyph, int x, int y) {
        return bBoxes || (glyph == '+' ? x < 20 && y < 20 : x < 24);
    });
    WriteBitmap("Label.bmp", 236, 69, LabelAt);
    WriteBitmap("Circle.bmp", 58, 23, [](int x, int y) { return IsHub(x, y) ? HUB_COLOR : WHITE; });
    WriteBitmap("gBar.bmp", 464, 5, BarAt);
    WriteBitmap("gTic.bmp", 9, 24, TicAt);
    for (int i = 1; i <= 3; ++i) {
        WriteBitmap(FormatText("string%d.bmp", i), 20, StringHeight(i),
                    [i](int x, int y) { return StringAt(i, x, y); });
    }
}

}  // namespace TestArtwork
