#pragma once

#include "platform/base/Types.h"

inline constexpr int PS_SOLID = 0;

// A solid pen. Lines are not smoothed: a pixel is covered if its centre lies within half the width of the
// line between the two points, which gives round ends. Making one allocates nothing.
class CPen {
public:
    CPen() = default;
    CPen(int nStyle, int nWidth, COLORREF clr) { CreatePen(nStyle, nWidth, clr); }
    CPen(const CPen&) = delete;
    CPen& operator=(const CPen&) = delete;

    // False for any style but PS_SOLID. A width below 1 counts as 1.
    bool CreatePen(int nStyle, int nWidth, COLORREF clr) {
        m_nWidth = nWidth < 1 ? 1 : nWidth;
        m_clr = clr;
        return nStyle == PS_SOLID;
    }

    int GetWidth() const { return m_nWidth; }
    COLORREF GetColor() const { return m_clr; }

private:
    int m_nWidth = 1;
    COLORREF m_clr = 0;
};
