#pragma once

#include "platform/base/Types.h"

#include <cstdint>

// One pixel in memory: 0xFFRRGGBB. The top byte is always FF, so that a row can be shown without conversion.
using Pixel = std::uint32_t;

inline constexpr Pixel PIXEL_BLACK = 0xFF000000;
inline constexpr Pixel PIXEL_WHITE = 0xFFFFFFFF;

constexpr Pixel PixelFromColor(COLORREF clr) {
    return PIXEL_BLACK | (clr & 0xFF) << 16 | (clr & 0xFF00) | (clr >> 16 & 0xFF);
}
constexpr COLORREF ColorFromPixel(Pixel pixel) {
    return (pixel & 0xFF) << 16 | (pixel & 0xFF00) | (pixel >> 16 & 0xFF);
}
