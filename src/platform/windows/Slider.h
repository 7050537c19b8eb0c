#pragma once

#include "platform/windows/Wnd.h"

// A horizontal slider over whole numbers, with ticks below it. The arrow keys move it by one, the wheel by as
// much as the desktop scrolls lines, a click beside the thumb and the page keys by a fifth of the range. When
// the mouse button that was pressed on it comes up it sends WM_NOTIFY with NM_RELEASEDCAPTURE to its parent.
class CSliderCtrl : public CWnd {
public:
    bool Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId);

    // Both ends included, each within 16 bits; a position outside moves to the nearer end.
    void SetRange(int nMin, int nMax, bool bRedraw = false);
    // From tick to tick, counted from the least position.
    void SetTicFreq(int nFreq);
    // The nearer end for a position outside the range.
    void SetPos(int nPos);
    int GetPos();

protected:
    LRESULT DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override;
};
