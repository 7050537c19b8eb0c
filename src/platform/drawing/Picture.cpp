#include "platform/drawing/Picture.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

RECT Union(const RECT& a, const RECT& b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

std::int64_t Area(const RECT& rc) {
    return std::int64_t{rc.Width()} * rc.Height();
}

// How much more the union of both covers than the two of them apart; not above zero where nothing is wasted.
std::int64_t Waste(const RECT& a, const RECT& b) {
    return Area(Union(a, b)) - Area(a) - Area(b);
}

}  // namespace

bool CPicture::Create(int cx, int cy, COLORREF clr) {
    m_dirty.nCount = 0;
    if (!m_surface.Create(cx, cy, false)) {
        return false;
    }
    const RECT rcAll{0, 0, cx, cy};
    m_surface.Fill(rcAll, PixelFromColor(clr));
    MarkDirty(rcAll);
    return true;
}

void CPicture::MarkDirty(const RECT& rc) {
    RECT rcNew = m_surface.Clip(rc.left, rc.top, rc.right, rc.bottom);
    if (rcNew.IsEmpty()) {
        return;
    }
    // Each merge takes one rectangle out of the list and may make another merge worth while.
    for (;;) {
        std::size_t nBest = 0;
        std::int64_t nLeast = std::numeric_limits<std::int64_t>::max();
        for (std::size_t i = 0; i < m_dirty.nCount; ++i) {
            const std::int64_t nWaste = Waste(m_dirty.rects[i], rcNew);
            if (nWaste < nLeast) {
                nLeast = nWaste;
                nBest = i;
            }
        }
        if (m_dirty.nCount == 0 || (nLeast > 0 && m_dirty.nCount < s_nMaxDirty)) {
            break;
        }
        rcNew = Union(m_dirty.rects[nBest], rcNew);
        m_dirty.rects[nBest] = m_dirty.rects[--m_dirty.nCount];
    }
    m_dirty.rects[m_dirty.nCount++] = rcNew;
}

CPicture::Dirty CPicture::TakeDirty() {
    const Dirty taken = m_dirty;
    m_dirty.nCount = 0;
    return taken;
}
