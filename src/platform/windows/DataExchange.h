#pragma once

class CWnd;

// One run of a dialog's DoDataExchange, which binds members to controls.
class CDataExchange {
public:
    explicit CDataExchange(CWnd& dialog) : m_pDlgWnd(&dialog) {}

    // The exchange can't be done: UpdateData returns false.
    void Fail() { m_bFailed = true; }
    bool HasFailed() const { return m_bFailed; }

    CWnd* const m_pDlgWnd;

private:
    bool m_bFailed = false;
};

// Binds a member of the dialog to the template's control with this id: the member becomes the control, and
// its class's message map gets the messages from then on. Once bound it stays so until the window goes.
void DDX_Control(CDataExchange* pDX, int nId, CWnd& control);
