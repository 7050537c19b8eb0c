#pragma once

#include "platform/base/Types.h"

// Where the dial's needle stands, in pixels of the dial's picture.
struct NeedleGeometry {
    POINT ptTip;
    POINT ptBase;
    // Left edge of the columns of the scale that the needle's upper end can touch.
    int nStripX = 0;
};

// The pivot of the needle lies below the picture.
inline constexpr POINT NEEDLE_PIVOT = {120, 270};
// Number of columns from nStripX on.
inline constexpr int NEEDLE_STRIP_WIDTH = 30;

// The needle for a distance in cents: 0.6 degrees for each, sharp to the right. Any value is safe.
NeedleGeometry GetNeedleGeometry(int nCents);
