#pragma once

#include "platform/windows/Wnd.h"

// Rows of text, unsorted, at most one selected. When the user selects another row the parent gets WM_COMMAND
// with LBN_SELCHANGE (if LBS_NOTIFY is set); a selection made in code tells nobody. The box takes as much of
// its height as whole rows need. With LBS_USETABSTOPS a TAB in a row's text leads to the next tab stop.
class CListBox : public CWnd {
public:
    bool Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId);

    // Appends a row; its index.
    int AddString(const CString& strText);
    // Inserts a row in front of row nIndex, at the end if nIndex is -1; its index, LB_ERR if nIndex is out of
    // range.
    int InsertString(int nIndex, const CString& strText);
    // The number of rows left, LB_ERR if there is no such row. A deleted row that was selected leaves none
    // selected.
    int DeleteString(int nIndex);
    int GetCount();
    // The selected row, LB_ERR if there is none.
    int GetCurSel();
    // Selects a row and brings it into view; -1 selects none. LB_ERR if there is no such row.
    int SetCurSel(int nIndex);
    // The first row that begins with the text, whatever its case, looked for from the row behind nStartAfter
    // to the end and then from the first row on; LB_ERR if there is none. -1 begins at the first row.
    int FindString(int nStartAfter, const CString& strPrefix);
    // Tab stops at every multiple of this many dialog units, 32 at first. False without LBS_USETABSTOPS.
    bool SetTabStops(int nEachStop);
    // The text of a row, empty if there is no such row.
    CString GetText(int nIndex) const;

protected:
    LRESULT DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override;

private:
    int Ask(UINT nMessage, int nParam, LPARAM lParam);
};
