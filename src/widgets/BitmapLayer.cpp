#include "widgets/BitmapLayer.h"

#include "platform/windows/ClientDc.h"
#include "widgets/MemoryPicture.h"

bool CBitmapLayer::Load(const CString& strFile, CWnd* pWnd) {
    const CClientDC dcClient(pWnd);
    if (!LoadMemoryPicture(dcClient, strFile, m_dc, m_bitmap)) {
        return false;
    }
    m_nWidth = m_bitmap.GetSize().cx;
    m_nHeight = m_bitmap.GetSize().cy;
    return true;
}

void CBitmapLayer::Draw(CDC* pDst, int x, int y) const {
    pDst->BitBlt(x, y, m_nWidth, m_nHeight, &m_dc, 0, 0, SRCCOPY);
}

void CBitmapLayer::DrawPart(CDC* pDst, int x, int y, int xSrc, int ySrc, int cx, int cy) const {
    pDst->BitBlt(x, y, cx, cy, &m_dc, xSrc, ySrc, SRCCOPY);
}
