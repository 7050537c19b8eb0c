#pragma once

#include "platform/windows/Wnd.h"

// One line of text that the user edits, with input methods; it has no limit of length of its own, and takes
// a blank for a line end. The parent gets WM_COMMAND with EN_CHANGE for each change by the user, and once for
// each SetWindowText, be the text the same, before that returns.
class CEdit : public CWnd {
public:
    bool Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId);
};
