#include "widgets/TintedBitmap.h"

#include "platform/windows/ClientDc.h"
#include "widgets/MemoryPicture.h"

namespace {

// dTint of the way from white to the tint's channel, then darkened by dShade; both steps truncate toward
// zero.
int TintChannel(int nTint, double dTint, double dShade) {
    const int nFlat = 255 + static_cast<int>(dTint * (nTint - 255));
    return nFlat - static_cast<int>(nFlat * dShade);
}

}  // namespace

bool CTintedBitmap::Load(const CString& strColorFile, const CString& strBevelFile, CWnd* pWnd) {
    const CClientDC dcClient(pWnd);
    if (!LoadMemoryPicture(dcClient, strColorFile, m_dcColor, m_bmpColor)) {
        return false;
    }
    m_nWidth = m_bmpColor.GetSize().cx;
    m_nHeight = m_bmpColor.GetSize().cy;
    if (!LoadMemoryPicture(dcClient, strBevelFile, m_dcBevel, m_bmpBevel) ||
        !CreateMemoryPicture(dcClient, m_nWidth, m_nHeight, m_dcResult, m_bmpResult)) {
        return false;
    }
    Render();
    return true;
}

void CTintedBitmap::SetColor(COLORREF clr) {
    m_clrTint = clr;
    Render();
}

void CTintedBitmap::Render() {
    for (int x = 0; x < m_nWidth; ++x) {
        for (int y = 0; y < m_nHeight; ++y) {
            const double dTint = 1.0 - GetBlue(m_dcColor.GetPixel(x, y)) * 0.00390625;
            const double dShade = 1.0 - GetBlue(m_dcBevel.GetPixel(x, y)) * 0.00390625;
            m_dcResult.SetPixel(x, y,
                                MakeColor(TintChannel(GetRed(m_clrTint), dTint, dShade),
                                          TintChannel(GetGreen(m_clrTint), dTint, dShade),
                                          TintChannel(GetBlue(m_clrTint), dTint, dShade)));
        }
    }
}

void CTintedBitmap::DrawPart(CDC* pDst, int x, int y, const RECT* prcSrc) const {
    pDst->BitBlt(x, y, prcSrc->Width(), prcSrc->Height(), &m_dcResult, prcSrc->left, prcSrc->top, SRCCOPY);
}
