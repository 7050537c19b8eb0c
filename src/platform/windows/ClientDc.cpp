#include "platform/windows/ClientDc.h"

#include "platform/windows/WndState.h"

#include <QtWidgets/QWidget>

CClientDC::CClientDC(CWnd* pWnd) : m_pWnd(pWnd) {
    CWndState& state = CWndState::Of(*pWnd);
    if (state.bLabel && state.pWidget) {
        const RECT rc = ClientAreaOf(*state.pWidget);
        state.SetClientSize(rc.Width(), rc.Height());
        state.bShowsPicture = true;
    }
    AttachPicture(&pWnd->GetPicture());
}

CClientDC::~CClientDC() {
    const CWndState& state = CWndState::Of(*m_pWnd);
    if (state.bLabel && state.pWidget) {
        state.pWidget->update();
    }
}

CPaintDC::CPaintDC(CWnd* pWnd) : CClientDC(pWnd) {
    CWndState::Of(*pWnd).bPaintDue = false;
}
