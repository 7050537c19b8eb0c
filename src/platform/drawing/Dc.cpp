#include "platform/drawing/Dc.h"

#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Pen.h"
#include "platform/drawing/Picture.h"
#include "platform/drawing/RasterCopy.h"
#include "platform/drawing/SysColors.h"
#include "platform/drawing/WideLine.h"

#include <cstdint>
#include <utility>

namespace {

CPen* StockPen(int nIndex) {
    static CPen penWhite(PS_SOLID, 1, 0xFFFFFF);
    static CPen penBlack(PS_SOLID, 1, 0x000000);
    return nIndex == WHITE_PEN ? &penWhite : &penBlack;
}

}  // namespace

CSurface* CDC::GetSurface() const {
    if (m_pPicture != nullptr) {
        return &m_pPicture->GetSurface();
    }
    return m_pBitmap != nullptr ? &m_pBitmap->GetSurface() : nullptr;
}

void CDC::MarkDirty(const RECT& rc) {
    if (m_pPicture != nullptr) {
        m_pPicture->MarkDirty(rc);
    }
}

bool CDC::CreateCompatibleDC(const CDC* pDc) {
    if (pDc != nullptr && !pDc->IsUsable()) {
        return false;
    }
    Reset();
    m_bMemory = true;
    return true;
}

void CDC::Reset() {
    m_bMemory = false;
    m_pPicture = nullptr;
    m_pBitmap = nullptr;
    m_pPen = nullptr;
    m_pFont = nullptr;
    m_clrBrush = 0xFFFFFF;
    m_clrText = 0;
    m_clrBack = 0xFFFFFF;
    m_nBkMode = OPAQUE;
    m_ptCurrent = {};
}

void CDC::AttachPicture(CPicture* pPicture) {
    m_bMemory = false;
    m_pBitmap = nullptr;
    m_pPicture = pPicture;
}

int CDC::GetDeviceCaps(int nIndex) const {
    return nIndex == RASTERCAPS && IsUsable() ? RC_BITBLT : 0;
}

CBitmap* CDC::SelectObject(CBitmap* pBitmap) {
    return m_bMemory ? std::exchange(m_pBitmap, pBitmap) : nullptr;
}

CPen* CDC::SelectObject(CPen* pPen) {
    CPen* const pPrevious = std::exchange(m_pPen, pPen);
    return pPrevious != nullptr ? pPrevious : StockPen(BLACK_PEN);
}

CFont* CDC::SelectObject(CFont* pFont) {
    return std::exchange(m_pFont, pFont);
}

bool CDC::SelectStockObject(int nIndex) {
    switch (nIndex) {
        case WHITE_BRUSH:
            m_clrBrush = 0xFFFFFF;
            return true;
        case BLACK_BRUSH:
            m_clrBrush = 0x000000;
            return true;
        case WHITE_PEN:
        case BLACK_PEN:
            m_pPen = StockPen(nIndex);
            return true;
        default:
            return false;
    }
}

int CDC::SetBkMode(int nMode) {
    return std::exchange(m_nBkMode, nMode);
}

COLORREF CDC::SetTextColor(COLORREF clr) {
    return std::exchange(m_clrText, clr & 0xFFFFFF);
}

COLORREF CDC::SetBkColor(COLORREF clr) {
    return std::exchange(m_clrBack, clr & 0xFFFFFF);
}

bool CDC::BitBlt(int x, int y, int cx, int cy, const CDC* pSrc, int xSrc, int ySrc, DWORD dwRop) {
    CSurface* const pDstSurface = GetSurface();
    const CSurface* const pSrcSurface = pSrc != nullptr ? pSrc->GetSurface() : nullptr;
    if (pDstSurface == nullptr || pSrcSurface == nullptr) {
        return false;
    }
    // What the source has of the rectangle, moved to the destination, cut by the destination.
    const std::int64_t dx = std::int64_t{x} - xSrc;
    const std::int64_t dy = std::int64_t{y} - ySrc;
    const RECT rcSrc = pSrcSurface->Clip(xSrc, ySrc, std::int64_t{xSrc} + cx, std::int64_t{ySrc} + cy);
    const RECT rcDst =
        pDstSurface->Clip(rcSrc.left + dx, rcSrc.top + dy, rcSrc.right + dx, rcSrc.bottom + dy);
    const BitColors colors{PixelFromColor(pSrc->m_clrBack), PixelFromColor(m_clrBack),
                           PixelFromColor(m_clrText)};
    if (!CopyRaster(*pDstSurface, rcDst, *pSrcSurface, static_cast<int>(rcDst.left - dx),
                    static_cast<int>(rcDst.top - dy), dwRop, colors)) {
        return false;
    }
    MarkDirty(rcDst);
    return true;
}

bool CDC::PatBlt(int x, int y, int cx, int cy, DWORD dwRop) {
    CSurface* const pSurface = GetSurface();
    if (pSurface == nullptr || dwRop != PATCOPY) {
        return false;
    }
    const RECT rc = pSurface->Clip(x, y, std::int64_t{x} + cx, std::int64_t{y} + cy);
    pSurface->Fill(rc, pSurface->ToPixel(m_clrBrush));
    MarkDirty(rc);
    return true;
}

void CDC::Fill(const RECT& rc, COLORREF clr) {
    if (CSurface* const pSurface = GetSurface()) {
        const RECT rcClipped = pSurface->Clip(rc.left, rc.top, rc.right, rc.bottom);
        pSurface->Fill(rcClipped, pSurface->ToPixel(clr));
        MarkDirty(rcClipped);
    }
}

void CDC::FillSolidRect(const RECT& rc, COLORREF clr) {
    SetBkColor(clr);
    Fill(rc, clr);
}

void CDC::FillSolidRect(int x, int y, int cx, int cy, COLORREF clr) {
    SetBkColor(clr);
    if (CSurface* const pSurface = GetSurface()) {
        Fill(pSurface->Clip(x, y, std::int64_t{x} + cx, std::int64_t{y} + cy), clr);
    }
}

COLORREF CDC::GetPixel(int x, int y) const {
    const CSurface* const pSurface = GetSurface();
    if (pSurface == nullptr || x < 0 || y < 0 || x >= pSurface->GetWidth() || y >= pSurface->GetHeight()) {
        return CLR_INVALID;
    }
    return ColorFromPixel(pSurface->GetRow(y)[x]);
}

void CDC::SetPixel(int x, int y, COLORREF clr) {
    if (x < 0 || y < 0) {
        return;
    }
    CSurface* const pSurface = GetSurface();
    if (pSurface != nullptr && x < pSurface->GetWidth() && y < pSurface->GetHeight()) {
        pSurface->GetRow(y)[x] = pSurface->ToPixel(clr);
        MarkDirty({x, y, x + 1, y + 1});
    }
}

bool CDC::DrawEdge(const RECT& rc, UINT nEdge, UINT nFlags) {
    if (GetSurface() == nullptr || nEdge != EDGE_SUNKEN || nFlags != BF_RECT) {
        return false;
    }
    // The light comes from the upper left: each ring is dark above and on its left, light below and on its
    // right, and the light sides have the corners between.
    const auto ring = [this](const RECT& rcRing, COLORREF clrDark, COLORREF clrLight) {
        if (rcRing.IsEmpty()) {
            return;
        }
        Fill({rcRing.left, rcRing.top, rcRing.right, rcRing.top + 1}, clrDark);
        Fill({rcRing.left, rcRing.top, rcRing.left + 1, rcRing.bottom}, clrDark);
        Fill({rcRing.left, rcRing.bottom - 1, rcRing.right, rcRing.bottom}, clrLight);
        Fill({rcRing.right - 1, rcRing.top, rcRing.right, rcRing.bottom}, clrLight);
    };
    ring(rc, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNHILIGHT));
    if (rc.Width() > 2 && rc.Height() > 2) {
        ring({rc.left + 1, rc.top + 1, rc.right - 1, rc.bottom - 1}, GetSysColor(COLOR_3DDKSHADOW),
             GetSysColor(COLOR_3DLIGHT));
    }
    return true;
}

void CDC::LineTo(int x, int y) {
    if (CSurface* const pSurface = GetSurface()) {
        const CPen* const pPen = m_pPen != nullptr ? m_pPen : StockPen(BLACK_PEN);
        MarkDirty(DrawWideLine(*pSurface, m_ptCurrent, {x, y}, pPen->GetWidth(), pPen->GetColor()));
    }
    m_ptCurrent = {x, y};
}
