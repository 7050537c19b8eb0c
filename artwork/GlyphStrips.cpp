#include "artwork/Accidentals.h"
#include "artwork/Pictures.h"
#include "artwork/Raster.h"
#include "artwork/Typeface.h"

#include <QtGui/QTransform>
#include <array>
#include <cmath>

// The big glyphs of the fine dial. The dial cuts them out of the strips at fixed columns and copies them over
// one another without clearing all the ground between, so ink keeps clear of the columns that the next glyph
// may leave standing:
//   a digit    columns 1 to 22 of its cell: the narrowest cell has 24 columns, and the ones digit covers the
//              last column of the widest tens digit;
//   the sharp  columns 0 to 21: the ground behind a name is cleared up to there behind the widest letter;
//   the plus   below row 19 only columns 6 to 18, and never beyond column 19: that much goes with the minus.

namespace {

constexpr int STRIP_HEIGHT = 27;
constexpr double CAP_HEIGHT = 23.0;
constexpr double BASELINE = 25.0;  // capitals fill rows 2 to 24: as much air above as below
constexpr QFont::Weight WEIGHT = QFont::ExtraBold;
constexpr double WIDEN = 1.06;  // the cells were cut for a broad face

constexpr std::array<int, 10> LETTER_EDGES{0, 32, 60, 90, 119, 146, 170, 200, 225, 249};
constexpr std::array<int, 14> DIGIT_EDGES{0, 26, 50, 75, 99, 125, 150, 175, 200, 225, 250, 286, 299, 321};

// Capitals and figures fill their rows exactly: what a round one reaches beyond the line in print would be
// only a grey fringe here.
QPainterPath GlyphOutline(char character) {
    const QPainterPath outline = TextOutline(QString(QLatin1Char(character)), WEIGHT, CAP_HEIGHT);
    const QRectF box = outline.boundingRect();
    QTransform fit;
    fit.translate(0.0, BASELINE);
    fit.scale(WIDEN, CAP_HEIGHT / box.height());
    fit.translate(0.0, -box.bottom());
    return fit.map(outline);
}

// Light and shade of a pillow-shaped surface that rises from the edge of the shape, lit from the top left.
GlyphStrip Emboss(const QPainterPath& path, int nWidth) {
    constexpr double RISE = 2.7;  // pixels from the edge to the flat top
    constexpr double SHADE = 0.80;
    constexpr double GLEAM = 0.42;
    constexpr double LIGHT_X = -0.48;
    constexpr double LIGHT_Y = -0.62;
    constexpr double LIGHT_Z = 0.62;

    const CField cover = Cover(path, nWidth, STRIP_HEIGHT);
    CField height = DistanceInside(cover);
    for (int y = 0; y < height.GetHeight(); ++y) {
        for (int x = 0; x < height.GetWidth(); ++x) {
            const double dDown = 1.0 - std::min(height.At(x, y) / RISE, 1.0);
            height.At(x, y) = RISE * 0.60 * std::sqrt(1.0 - dDown * dDown);
        }
    }
    Blur(height, 3);

    CField tinted(nWidth, STRIP_HEIGHT);
    CField shaded(nWidth, STRIP_HEIGHT);
    for (int y = 0; y < height.GetHeight(); ++y) {
        for (int x = 0; x < height.GetWidth(); ++x) {
            const double dSlopeX = (height.Near(x + 1, y) - height.Near(x - 1, y)) * SAMPLES / 2.0;
            const double dSlopeY = (height.Near(x, y + 1) - height.Near(x, y - 1)) * SAMPLES / 2.0;
            const double dLight = (-dSlopeX * LIGHT_X - dSlopeY * LIGHT_Y + LIGHT_Z) /
                                  std::sqrt(dSlopeX * dSlopeX + dSlopeY * dSlopeY + 1.0) / LIGHT_Z;
            const double dGleam = std::clamp(dLight - 1.0, 0.0, 1.0) * GLEAM;
            const double dShade = std::clamp(1.0 - dLight, 0.0, 1.0) * SHADE;
            tinted.At(x, y) = cover.At(x, y) * (1.0 - dGleam);
            shaded.At(x, y) = cover.At(x, y) * dShade;
        }
    }

    GlyphStrip strip{CPicture(nWidth, STRIP_HEIGHT), CPicture(nWidth, STRIP_HEIGHT)};
    for (int y = 0; y < STRIP_HEIGHT; ++y) {
        for (int x = 0; x < nWidth; ++x) {
            const std::uint8_t nColor = ToByte(1.0 - tinted.Mean(x, y));
            const std::uint8_t nBevel = ToByte(1.0 - shaded.Mean(x, y));
            strip.color.At(x, y) = {nColor, nColor, nColor};
            strip.bevel.At(x, y) = {nBevel, nBevel, nBevel};
        }
    }
    return strip;
}

}  // namespace

GlyphStrip DrawLetterStrip() {
    constexpr double GAP_BEHIND = 3.0;  // an accidental follows at the cell's edge
    constexpr double GAP_BEFORE_ACCIDENTAL = 1.0;
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (std::size_t i = 0; i < 7; ++i) {
        const QPainterPath glyph = GlyphOutline("ABCDEFG"[i]);
        // Upright stems begin on a whole column and stay crisp.
        const double dLeft = std::floor(LETTER_EDGES[i + 1] - GAP_BEHIND - glyph.boundingRect().width());
        path.addPath(glyph.translated(dLeft, 0.0));
    }
    path.addPath(SharpOutline().translated(LETTER_EDGES[7] + GAP_BEFORE_ACCIDENTAL, 0.0));
    path.addPath(FlatOutline().translated(LETTER_EDGES[8] + GAP_BEFORE_ACCIDENTAL, 0.0));
    return Emboss(path, LETTER_EDGES.back());
}

GlyphStrip DrawDigitStrip() {
    constexpr double DIGIT_CENTRE = 12.0;
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (std::size_t i = 0; i < 10; ++i) {
        const QPainterPath glyph = GlyphOutline("0123456789"[i]);
        path.addPath(
            glyph.translated(DIGIT_EDGES[i] + DIGIT_CENTRE - glyph.boundingRect().width() / 2.0, 0.0));
    }
    path.addPath(GlyphOutline('%').translated(DIGIT_EDGES[10] + 2.0, 0.0));

    // The signs share their centre on the dial, where the minus lies six columns further right.
    constexpr double MIDDLE = BASELINE - CAP_HEIGHT / 2.0;
    constexpr double THICK = 5.0;
    constexpr double PLUS_SPAN = 15.0;
    constexpr double MINUS_SPAN = 11.0;
    const double xMinus = DIGIT_EDGES[11] + 6.5;
    const double xPlus = DIGIT_EDGES[12] + 12.5;
    path.addRect(xMinus - MINUS_SPAN / 2.0, MIDDLE - THICK / 2.0, MINUS_SPAN, THICK);
    QPainterPath plus;
    plus.setFillRule(Qt::WindingFill);
    plus.addRect(xPlus - PLUS_SPAN / 2.0, MIDDLE - THICK / 2.0, PLUS_SPAN, THICK);
    plus.addRect(xPlus - THICK / 2.0, MIDDLE - PLUS_SPAN / 2.0, THICK, PLUS_SPAN);
    path.addPath(plus.simplified());
    return Emboss(path, DIGIT_EDGES.back());
}
