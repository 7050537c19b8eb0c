#include "widgets/ColorSwatch.h"

#include "platform/windows/ClientDc.h"
#include "widgets/MemoryPicture.h"

#include <mutex>

void CColorSwatch::Init(CWnd* pParent, int nId) {
    m_pControl = pParent->GetDlgItem(nId);
    if (m_pControl == nullptr) {
        return;
    }
    m_rcClient = m_pControl->GetClientRect();
    const CClientDC dcClient(m_pControl);
    if (!CreateMemoryPicture(dcClient, GetWidth(), GetHeight(), m_dc, m_bitmap)) {
        return;
    }
    m_dc.SelectStockObject(BLACK_BRUSH);
    m_dc.SelectStockObject(WHITE_PEN);
    m_dc.PatBlt(0, 0, GetWidth(), GetHeight(), PATCOPY);
    m_dc.SetBkMode(TRANSPARENT);
    m_dc.SetTextColor(0);
}

void CColorSwatch::FillRect(int x, int y, int cx, int cy, COLORREF clr) {
    m_dc.FillSolidRect(x, y, cx, cy, clr);
}

void CColorSwatch::Show() {
    if (m_pControl != nullptr) {
        CClientDC dcClient(m_pControl);
        CopyTo(dcClient);
    }
}

void CColorSwatch::Repaint() {
    if (m_pControl != nullptr) {
        m_pControl->InvalidateRect(&m_rcClient, false);
        CPaintDC dcPaint(m_pControl);
        CopyTo(dcPaint);
    }
}

void CColorSwatch::CopyTo(CDC& dc) const {
    const std::lock_guard lock(m_pControl->GetPictureLock());
    dc.BitBlt(0, 0, GetWidth(), GetHeight(), &m_dc, 0, 0, SRCCOPY);
}
