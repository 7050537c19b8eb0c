#include "platform/drawing/Dc.h"
#include "platform/drawing/SysColors.h"
#include "platform/windows/ClientDc.h"
#include "window/HintTable.h"
#include "window/TunerWnd.h"

#include <mutex>

// Each widget is drawn under the picture lock by itself, so that a frame never waits for more than one of
// them.
void CTunerWnd::OnPaint() {
    CPaintDC dc(this);
    const COLORREF clrFace = GetSysColor(COLOR_BTNFACE);
    {
        const std::scoped_lock lock(GetPictureLock());
        dc.DrawEdge(HINT_TABLE[HINT_LIST].rc, EDGE_SUNKEN, BF_RECT);
    }
    if (clrFace != m_clrFace) {
        m_clrFace = clrFace;
        m_logo.Blend(clrFace);
    }
    {
        const std::scoped_lock lock(GetPictureLock());
        m_logo.Draw(&dc, HINT_TABLE[HINT_LOGO].rc.left, HINT_TABLE[HINT_LOGO].rc.top);
    }
    CFont* pOldFont = dc.SelectObject(&m_fontMain);
    {
        const std::scoped_lock lock(GetPictureLock());
        m_stringDiagram.Draw(&dc, true);
    }
    {
        const std::scoped_lock lock(GetPictureLock());
        m_levelMeter.Draw(&dc, true);
    }
    {
        const std::scoped_lock lock(GetPictureLock());
        m_coarse.Draw(&dc, true);
    }
    {
        const std::scoped_lock lock(GetPictureLock());
        m_fineDial.Draw(&dc, true, false);
    }
    dc.SelectObject(pOldFont);
}

void CTunerWnd::OnTimer() {
    Default();
    SendMessage(WM_PAINT);
    // Twice a second is as often as anybody wants to hear it.
    SetAccessibleDescription(m_spokenReading.GetText());
}

void CTunerWnd::DrawTuning() {
    CClientDC dc(this);
    CFont* pOldFont = dc.SelectObject(&m_fontMain);
    {
        const std::scoped_lock lock(GetPictureLock());
        m_stringDiagram.Draw(&dc, true);
    }
    {
        const std::scoped_lock lock(GetPictureLock());
        m_coarse.Draw(&dc, true);
    }
    dc.SelectObject(pOldFont);
}
