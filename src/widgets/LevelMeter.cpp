#include "widgets/LevelMeter.h"

#include "platform/windows/ClientDc.h"
#include "widgets/ComposedPicture.h"

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr int FRAME = 2;

// One channel of the gradient: from the bottom's value, nSteps steps would reach the top's.
class CChannelRamp {
public:
    CChannelRamp(int nTop, int nBottom, int nSteps)
        : m_nBottom(nBottom), m_fStep(static_cast<float>(static_cast<double>(nTop - nBottom) / nSteps)) {}

    int GetValue(int nStep) const {
        return m_nBottom + static_cast<int>(nStep * static_cast<double>(m_fStep));
    }

private:
    int m_nBottom;
    float m_fStep;
};

}  // namespace

bool CLevelMeter::Create(CWnd* pWnd, RECT rc) {
    const CClientDC dc(pWnd);
    if (!CreateComposedPicture(dc, rc.Width(), rc.Height(), WHITE_BRUSH, m_dcGradient, m_bmpGradient) ||
        !CreateComposedPicture(dc, rc.Width(), rc.Height(), WHITE_BRUSH, m_dcShow, m_bmpShow)) {
        return false;
    }
    m_rc = rc;
    return true;
}

void CLevelMeter::SetColors(COLORREF clrTop, COLORREF clrBottom) {
    m_clrTop = clrTop;
    m_clrBottom = clrBottom;
    const int nHalf = m_rc.Height() / 2;
    const int nSteps = nHalf + 2;
    const CChannelRamp red(GetRed(clrTop), GetRed(clrBottom), nSteps);
    const CChannelRamp green(GetGreen(clrTop), GetGreen(clrBottom), nSteps);
    const CChannelRamp blue(GetBlue(clrTop), GetBlue(clrBottom), nSteps);
    // Each step paints from its row down to twice that row, so that two rows of it stay when the next one has
    // painted over the rest. The last steps would lie above the picture.
    for (int i = 0; i < nHalf; ++i) {
        const int y = nHalf - i;
        m_dcGradient.FillSolidRect(0, y, m_rc.Width(), y,
                                   MakeColor(red.GetValue(i), green.GetValue(i), blue.GetValue(i)));
    }
}

void CLevelMeter::SetLevel(float fLevel) {
    if (fLevel > 1.0F) {
        fLevel = 1.0F;
    } else if (!(fLevel > 0.0F)) {
        fLevel = 0.0F;
    }
    const double dBar = (m_rc.Height() - 2 * FRAME) * static_cast<double>(fLevel);
    m_nBar.store(static_cast<int>(dBar), std::memory_order_relaxed);
}

void CLevelMeter::Draw(CDC* pDst, bool bFull) {
    const int nBar = m_nBar.load(std::memory_order_relaxed);
    if (bFull) {
        DrawFull(pDst, nBar);
    } else {
        DrawChange(pDst, nBar);
    }
    m_nPrevBar.store(nBar, std::memory_order_relaxed);
}

void CLevelMeter::DrawFull(CDC* pDst, int nBar) {
    const int w = m_rc.Width();
    const int h = m_rc.Height();
    const int nTop = h - nBar - FRAME;
    m_dcShow.DrawEdge({0, 0, w, h}, EDGE_SUNKEN, BF_RECT);
    m_dcShow.FillSolidRect(FRAME, FRAME, w - 2 * FRAME, nTop - FRAME, WHITE);
    m_dcShow.BitBlt(FRAME, nTop, w - 2 * FRAME, nBar, &m_dcGradient, FRAME, nTop, SRCCOPY);
    pDst->BitBlt(m_rc.left, m_rc.top, w, h, &m_dcShow, 0, 0, SRCCOPY);
}

void CLevelMeter::DrawChange(CDC* pDst, int nBar) {
    const int nInside = m_rc.Width() - 2 * FRAME;
    const int nBottom = m_rc.Height() - FRAME;
    const int nOld = nBottom - m_nPrevBar.load(std::memory_order_relaxed);
    const int nNew = nBottom - nBar;
    if (nOld < nNew) {
        pDst->FillSolidRect(m_rc.left + FRAME, m_rc.top + nOld, nInside, nNew - nOld, WHITE);
    } else {
        pDst->BitBlt(m_rc.left + FRAME, m_rc.top + nNew, nInside, nOld - nNew, &m_dcGradient, FRAME, nNew,
                     SRCCOPY);
    }
}
