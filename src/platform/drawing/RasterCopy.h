#pragma once

#include "platform/drawing/Surface.h"

// The colours that stand for the two values of a bit where one surface is monochrome and the other is not.
struct BitColors {
    Pixel toBit;   // from colour to monochrome: this colour becomes 1
    Pixel ofOne;   // from monochrome to colour
    Pixel ofZero;  // from monochrome to colour
};

// Combines a rectangle of src into rcDst of dst by a raster code of Dc.h, as CDC::BitBlt says. rcDst must lie
// on dst, and the rectangle of its size at (xSrc, ySrc) on src; they may be the same surface and overlap.
// False, and nothing done, for an unknown code.
bool CopyRaster(CSurface& dst, const RECT& rcDst, const CSurface& src, int xSrc, int ySrc, DWORD dwRop,
                const BitColors& colors);
