#pragma once

#include "artwork/Picture.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <string>

// All that the program draws. A colour file is the shape of its glyphs, black on white; a bevel file their
// light and shade: the tuner multiplies the two.
struct GlyphStrip {
    CPicture color;
    CPicture bevel;
};
GlyphStrip DrawLetterStrip();
GlyphStrip DrawDigitStrip();

// The fine dial's scale, and the hub that the needle comes out of.
CPicture DrawDialScale();
CPicture DrawHub();

// The coarse indicator's bar and one of its ticks.
CPicture DrawCoarseBar();
CPicture DrawCoarseTick();

enum class StringKind { Wound, Plain, Disabled };
CPicture DrawString(StringKind kind);

// The logo, and where it is clear: 0 shows the logo, 255 the window.
struct Logo {
    CPicture base;
    CPicture opacity;
};
Logo DrawLogo();

// The product's mark, in a square of a given side: for the logo and the icons.
void PaintMark(QPainter& painter, double dSide);
QImage DrawIcon(int nSide);
std::string IconAsSvg();
