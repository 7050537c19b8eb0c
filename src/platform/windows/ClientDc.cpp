#include "platform/windows/ClientDc.h"

#include "platform/windows/WndState.h"

CClientDC::CClientDC(CWnd* pWnd) {
    AttachPicture(&pWnd->GetPicture());
}

CPaintDC::CPaintDC(CWnd* pWnd) {
    AttachPicture(&pWnd->GetPicture());
    CWndState::Of(*pWnd).bPaintDue = false;
}
