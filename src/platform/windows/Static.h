#pragma once

#include "platform/windows/Wnd.h"

// A line or block of text on the window. Text is wrapped at blanks and cut at the rectangle's edges. It lets
// the mouse through to the parent. With WS_BORDER, SS_SUNKEN or both it has a frame, within which its client
// area lies. Once a client context has drawn on it it shows the picture instead of the text.
class CStatic : public CWnd {
public:
    bool Create(const CString& strText, DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId = -1);
};
