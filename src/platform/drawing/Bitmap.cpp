#include "platform/drawing/Bitmap.h"

#include "platform/drawing/Dc.h"

bool CBitmap::CreateCompatibleBitmap(const CDC* pDc, int cx, int cy) {
    DeleteObject();
    return pDc != nullptr && pDc->IsUsable() && m_surface.Create(cx, cy, false);
}

bool CBitmap::CreateBitmap(int cx, int cy, UINT nPlanes, UINT nBitCount, const void* pBits) {
    DeleteObject();
    return nPlanes == 1 && nBitCount == 1 && pBits == nullptr && m_surface.Create(cx, cy, true);
}
