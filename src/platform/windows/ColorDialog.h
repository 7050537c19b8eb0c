#pragma once

#include "platform/base/Types.h"

class CWnd;

// The system's dialog for choosing a colour.
class CColorDialog {
public:
    // Starts from a colour. Without a parent the modal window in front is the owner, or the application's
    // main window.
    explicit CColorDialog(COLORREF clrInit, CWnd* pParent = nullptr);

    // IDOK, or IDCANCEL however the user turns away; also if the owner's window goes meanwhile.
    int DoModal();
    // The colour chosen after IDOK, else the one it started from.
    COLORREF GetColor() const { return m_clr; }

private:
    COLORREF m_clr;
    CWnd* const m_pOwner;
};
