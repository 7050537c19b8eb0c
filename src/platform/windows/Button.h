#pragma once

#include "platform/windows/Wnd.h"

// A push button, which sends WM_COMMAND with BN_CLICKED to its parent, or with BS_GROUPBOX a frame with a
// title, which lets the mouse through. "&" before a character of the caption underlines it.
class CButton : public CWnd {
public:
    bool Create(const CString& strCaption, DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId);
};
