#include "widgets/OpacityBitmap.h"

#include "platform/windows/ClientDc.h"
#include "widgets/MemoryPicture.h"

namespace {

// dShare of the way from the picture's channel to the background's, truncated toward zero.
int BlendChannel(int nPicture, int nBack, double dShare) {
    return nPicture + static_cast<int>((nBack - nPicture) * dShare);
}

}  // namespace

bool COpacityBitmap::Load(const CString& strFile, const CString& strOpacityFile, CWnd* pWnd) {
    const CClientDC dcClient(pWnd);
    if (!LoadMemoryPicture(dcClient, strFile, m_dcBase, m_bmpBase)) {
        return false;
    }
    m_nWidth = m_bmpBase.GetSize().cx;
    m_nHeight = m_bmpBase.GetSize().cy;
    return LoadMemoryPicture(dcClient, strOpacityFile, m_dcOpacity, m_bmpOpacity) &&
           CreateMemoryPicture(dcClient, m_nWidth, m_nHeight, m_dcResult, m_bmpResult);
}

bool COpacityBitmap::Blend(COLORREF clrBack) {
    for (int x = 0; x < m_nWidth; ++x) {
        for (int y = 0; y < m_nHeight; ++y) {
            const COLORREF clrPicture = m_dcBase.GetPixel(x, y);
            const double dShare = GetBlue(m_dcOpacity.GetPixel(x, y)) * 0.00390625;
            m_dcResult.SetPixel(x, y,
                                MakeColor(BlendChannel(GetRed(clrPicture), GetRed(clrBack), dShare),
                                          BlendChannel(GetGreen(clrPicture), GetGreen(clrBack), dShare),
                                          BlendChannel(GetBlue(clrPicture), GetBlue(clrBack), dShare)));
        }
    }
    return true;
}

void COpacityBitmap::Draw(CDC* pDst, int x, int y) const {
    pDst->BitBlt(x, y, m_nWidth, m_nHeight, &m_dcResult, 0, 0, SRCCOPY);
}
