#pragma once

#include "platform/windows/Wnd.h"

// A row of text picked from a list that opens below it. The rectangle includes the open list.
class CComboBox : public CWnd {
public:
    bool Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId);
};
