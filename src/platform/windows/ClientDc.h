#pragma once

#include "platform/drawing/Dc.h"

class CWnd;

// Draws into the picture of a window's client area, on any thread; the message loop brings it to the screen.
// The window's picture lock is to be held while it draws. Making one neither allocates nor waits.
class CClientDC : public CDC {
public:
    explicit CClientDC(CWnd* pWnd);
};

// The same for WM_PAINT: the paint that was due is done with it.
class CPaintDC : public CDC {
public:
    explicit CPaintDC(CWnd* pWnd);
};
