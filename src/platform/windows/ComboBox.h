#pragma once

#include "platform/windows/Wnd.h"

// A row of text picked from a list that opens below it; at most one row is selected, none at first. When the
// user picks a row the parent gets WM_COMMAND with CBN_SELCHANGE; a selection made in code tells nobody. The
// rectangle includes the open list, which grows wider than the box where its rows need it. A CBS_DROPDOWN
// box takes no typing: its rows are all there is.
class CComboBox : public CWnd {
public:
    bool Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId);

    // Inserts a row in front of row nIndex, at the end if nIndex is -1; its index, CB_ERR if nIndex is out of
    // range.
    int InsertString(int nIndex, const CString& strText);
    // The selected row, CB_ERR if there is none.
    int GetCurSel();
    // Selects a row; -1, or a row that isn't there, selects none and gives CB_ERR.
    int SetCurSel(int nIndex);

protected:
    LRESULT DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override;

private:
    int Ask(UINT nMessage, int nParam, LPARAM lParam);
};
