#pragma once

#include "platform/windows/Wnd.h"

// One line of text that the user edits, with input methods; it has no limit of length of its own.
class CEdit : public CWnd {
public:
    bool Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId);
};
