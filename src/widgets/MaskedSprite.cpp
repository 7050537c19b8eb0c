#include "widgets/MaskedSprite.h"

#include "platform/windows/ClientDc.h"
#include "widgets/MemoryPicture.h"

bool CMaskedSprite::Load(const CString& strFile, CWnd* pWnd, COLORREF clrTransparent) {
    const CClientDC dcClient(pWnd);
    if (!LoadMemoryPicture(dcClient, strFile, m_dcImage, m_bmpImage)) {
        return false;
    }
    const SIZE size = m_bmpImage.GetSize();
    if (!m_dcMask.CreateCompatibleDC(&dcClient) || !m_bmpMask.CreateBitmap(size.cx, size.cy, 1, 1, nullptr)) {
        return false;
    }
    m_dcMask.SelectObject(&m_bmpMask);
    m_dcImage.SetBkColor(clrTransparent);
    m_dcMask.BitBlt(0, 0, size.cx, size.cy, &m_dcImage, 0, 0, SRCCOPY);

    if (!CreateMemoryPicture(m_dcImage, size.cx, size.cy, m_dcCutout, m_bmpCutout)) {
        return false;
    }
    m_dcCutout.BitBlt(0, 0, size.cx, size.cy, &m_dcImage, 0, 0, SRCCOPY);
    m_dcCutout.BitBlt(0, 0, size.cx, size.cy, &m_dcMask, 0, 0, DSNA);

    if (!CreateMemoryPicture(m_dcImage, size.cx, size.cy, m_dcWork, m_bmpWork)) {
        return false;
    }
    m_nWidth = size.cx;
    m_nHeight = size.cy;
    return true;
}

void CMaskedSprite::Draw(CDC* pDst, int x, int y) {
    m_dcWork.BitBlt(0, 0, m_nWidth, m_nHeight, pDst, x, y, SRCCOPY);
    m_dcWork.BitBlt(0, 0, m_nWidth, m_nHeight, &m_dcMask, 0, 0, SRCAND);
    m_dcWork.BitBlt(0, 0, m_nWidth, m_nHeight, &m_dcCutout, 0, 0, SRCINVERT);
    pDst->BitBlt(x, y, m_nWidth, m_nHeight, &m_dcWork, 0, 0, SRCCOPY);
}
