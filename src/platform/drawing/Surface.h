#pragma once

#include "platform/drawing/Pixel.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// A rectangle of pixels in memory, row by row from the top without gaps. A monochrome surface has the same
// form, but holds only black (bit 0) and white (bit 1).
class CSurface {
public:
    // 4096 by 4096: far more than any picture here, and little enough that a file that lies can take no
    // harmful amount.
    static constexpr std::int64_t s_nMaxPixels = std::int64_t{1} << 24;

    // All pixels start black. False, and the surface is empty, if a side is below 1 or there is no room.
    bool Create(int cx, int cy, bool bMonochrome);
    void Destroy();

    bool IsEmpty() const { return m_pixels.empty(); }
    bool IsMonochrome() const { return m_bMonochrome; }
    int GetWidth() const { return m_nWidth; }
    int GetHeight() const { return m_nHeight; }

    // y must lie inside.
    Pixel* GetRow(int y) { return m_pixels.data() + Offset(y); }
    const Pixel* GetRow(int y) const { return m_pixels.data() + Offset(y); }

    // What a colour is on this surface: itself, or on a monochrome one the nearer of black and white.
    Pixel ToPixel(COLORREF clr) const;

    // The part of a rectangle that lies on the surface; 0, 0, 0, 0 if none does. The edges are wider than int
    // so that a corner plus a size can be given as it is.
    RECT Clip(std::int64_t nLeft, std::int64_t nTop, std::int64_t nRight, std::int64_t nBottom) const;

    // Fills a rectangle that Clip gave.
    void Fill(const RECT& rc, Pixel pixel);

private:
    std::size_t Offset(int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth);
    }

    std::vector<Pixel> m_pixels;
    int m_nWidth = 0;
    int m_nHeight = 0;
    bool m_bMonochrome = false;
};
