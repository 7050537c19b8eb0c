#include "platform/drawing/Surface.h"

#include <algorithm>
#include <exception>

bool CSurface::Create(int cx, int cy, bool bMonochrome) {
    Destroy();
    if (cx < 1 || cy < 1 || std::int64_t{cx} * cy > s_nMaxPixels) {
        return false;
    }
    try {
        m_pixels.resize(static_cast<std::size_t>(cx) * static_cast<std::size_t>(cy), PIXEL_BLACK);
    } catch (const std::exception&) {
        return false;
    }
    m_nWidth = cx;
    m_nHeight = cy;
    m_bMonochrome = bMonochrome;
    return true;
}

void CSurface::Destroy() {
    m_pixels = {};
    m_nWidth = 0;
    m_nHeight = 0;
    m_bMonochrome = false;
}

Pixel CSurface::ToPixel(COLORREF clr) const {
    if (!m_bMonochrome) {
        return PixelFromColor(clr);
    }
    return GetRed(clr) + GetGreen(clr) + GetBlue(clr) > 3 * 255 / 2 ? PIXEL_WHITE : PIXEL_BLACK;
}

RECT CSurface::Clip(std::int64_t nLeft, std::int64_t nTop, std::int64_t nRight, std::int64_t nBottom) const {
    const std::int64_t l = std::max<std::int64_t>(nLeft, 0);
    const std::int64_t t = std::max<std::int64_t>(nTop, 0);
    const std::int64_t r = std::min<std::int64_t>(nRight, m_nWidth);
    const std::int64_t b = std::min<std::int64_t>(nBottom, m_nHeight);
    if (r <= l || b <= t) {
        return {};
    }
    return {static_cast<int>(l), static_cast<int>(t), static_cast<int>(r), static_cast<int>(b)};
}

void CSurface::Fill(const RECT& rc, Pixel pixel) {
    for (int y = rc.top; y < rc.bottom; ++y) {
        Pixel* const pRow = GetRow(y);
        std::fill(pRow + rc.left, pRow + rc.right, pixel);
    }
}
