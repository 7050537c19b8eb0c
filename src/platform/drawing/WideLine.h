#pragma once

#include "platform/drawing/Surface.h"

// Colours every pixel whose centre lies within nWidth / 2 of the segment between two pixel centres, and no
// other: a line with round ends, the same pixels whichever end comes first, exact in integers, so that a
// second line of another colour covers the first one whole. The result is the clipped rectangle around it. A
// line that ends beyond a million pixels from the origin, or is wider than 255, is not drawn.
RECT DrawWideLine(CSurface& surface, POINT ptFrom, POINT ptTo, int nWidth, COLORREF clr);
