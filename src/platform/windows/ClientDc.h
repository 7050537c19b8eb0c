#pragma once

#include "platform/drawing/Dc.h"

class CWnd;

// Draws into the picture of a window's client area, on any thread; the message loop brings it to the screen.
// The window's picture lock is to be held while it draws. Making one neither allocates nor waits.
//
// A label has a picture too, on the message-loop thread: the first context made for it gives it one in the
// face colour, which it shows in place of its text from then on; that one wants the lock free.
class CClientDC : public CDC {
public:
    explicit CClientDC(CWnd* pWnd);
    ~CClientDC() override;
    CClientDC(const CClientDC&) = delete;
    CClientDC& operator=(const CClientDC&) = delete;
    CClientDC(CClientDC&&) = delete;
    CClientDC& operator=(CClientDC&&) = delete;

private:
    CWnd* const m_pWnd;
};

// The same for WM_PAINT: the paint that was due is done with it.
class CPaintDC : public CClientDC {
public:
    explicit CPaintDC(CWnd* pWnd);
};
