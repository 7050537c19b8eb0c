#include "widgets/ColorSwatch.h"

#include "platform/windows/ClientDc.h"
#include "widgets/ComposedPicture.h"

#include <mutex>

void CColorSwatch::Init(CWnd* pParent, int nId) {
    m_pControl = pParent->GetDlgItem(nId);
    if (m_pControl == nullptr) {
        return;
    }
    m_rcClient = m_pControl->GetClientRect();
    const CClientDC dcClient(m_pControl);
    CreateComposedPicture(dcClient, GetWidth(), GetHeight(), BLACK_BRUSH, m_dc, m_bitmap);
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
