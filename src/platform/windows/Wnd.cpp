#include "platform/windows/Wnd.h"

#include "platform/windows/DataExchange.h"
#include "platform/windows/ModalBox.h"
#include "platform/windows/WinApp.h"
#include "platform/windows/WndState.h"

#include <QtCore/QTimerEvent>
#include <QtGui/QIcon>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <algorithm>

CWnd::CWnd() : m_pState(std::make_unique<CWndState>(*this)) {}

CWnd::~CWnd() {
    CModalBox::EndAllOf(*this);
    m_pState->Detach();
}

bool CWnd::CreateEx(DWORD dwStyle, const CString& strTitle, const RECT& rc, CWnd* pParent, int nId) {
    if (!HasToolkit() || IsWindow()) {
        return false;
    }
    if (!m_pState->Attach(MakeFrameWidget(*m_pState), {strTitle, dwStyle & ~WS_VISIBLE, rc, pParent, nId})) {
        return false;
    }
    if (!rc.IsEmpty()) {
        SetWindowPos(rc.left, rc.top, rc.Width(), rc.Height(), SWP_NOZORDER);
    }
    if ((dwStyle & WS_VISIBLE) != 0) {
        ShowWindow(SW_SHOW);
    }
    return true;
}

bool CWnd::DestroyWindow() {
    CWndState& state = *m_pState;
    if (!state.pWidget || state.bDestroying) {
        return false;
    }
    state.bDestroying = true;
    state.pWidget->hide();
    CModalBox::EndAllOf(*this);
    // Windows that this one owns go first, then itself, then its controls.
    const std::vector<CWnd*> children = state.children;
    const auto stillThere = [&state](const CWnd* pChild) {
        return std::find(state.children.begin(), state.children.end(), pChild) != state.children.end();
    };
    for (CWnd* const pChild : children) {
        if (stillThere(pChild) && CWndState::Of(*pChild).IsTopLevel()) {
            pChild->DestroyWindow();
        }
    }
    state.Dispatch(WM_DESTROY, 0, 0, nullptr);
    for (CWnd* const pChild : children) {
        if (stillThere(pChild)) {
            pChild->DestroyWindow();
        }
    }
    state.Detach();
    state.bDestroying = false;
    if (CWinApp* const pApp = GetApp(); pApp != nullptr && pApp->GetMainWnd() == this) {
        QCoreApplication::quit();
    }
    PostNcDestroy();
    return true;
}

bool CWnd::IsWindow() const {
    return m_pState->pWidget != nullptr;
}

bool CWnd::SetIcon(const CString& strFile) {
    const QIcon icon(QString::fromStdString(strFile));
    if (!m_pState->pWidget || icon.availableSizes().isEmpty()) {
        return false;
    }
    m_pState->pWidget->setWindowIcon(icon);
    return true;
}

bool CWnd::SetTimer(UINT nId, UINT nMilliseconds) {
    KillTimer(nId);
    if (!IsWindow()) {
        return false;
    }
    const int nToolkitId = m_pState->pWidget->startTimer(static_cast<int>(nMilliseconds));
    if (nToolkitId == 0) {
        return false;
    }
    m_pState->timers.push_back({nId, nToolkitId});
    return true;
}

bool CWnd::KillTimer(UINT nId) {
    auto& timers = m_pState->timers;
    const auto found = std::find_if(timers.begin(), timers.end(),
                                    [nId](const CWndState::CTimer& timer) { return timer.nId == nId; });
    if (found == timers.end()) {
        return false;
    }
    m_pState->pWidget->killTimer(found->nToolkitId);
    timers.erase(found);
    return true;
}

void CWnd::ShowWindow(int nCmdShow) {
    if (!IsWindow()) {
        return;
    }
    QWidget& widget = *m_pState->pWidget;
    if (nCmdShow == SW_HIDE) {
        widget.hide();
        return;
    }
    if (!m_pState->IsTopLevel()) {
        widget.show();
        return;
    }
    if (nCmdShow == SW_MINIMIZE) {
        widget.showMinimized();
        return;
    }
    widget.showNormal();
    // Without a window manager nobody else gives the keyboard to a window that comes up.
    widget.activateWindow();
}

bool CWnd::IsWindowVisible() const {
    return IsWindow() && m_pState->pWidget->isVisible();
}

bool CWnd::IsIconic() const {
    return IsWindow() && m_pState->pWidget->isMinimized();
}

void CWnd::EnableWindow(bool bEnable) {
    if (IsWindow()) {
        m_pState->pWidget->setEnabled(bEnable);
    }
}

bool CWnd::IsWindowEnabled() const {
    return IsWindow() && m_pState->pWidget->isEnabled();
}

void CWnd::SetFocus() {
    if (IsWindow()) {
        m_pState->pWidget->setFocus(Qt::OtherFocusReason);
    }
}

CWnd* CWnd::GetFocus() {
    // A window in front without a control that has the keyboard has it itself.
    const QWidget* const pFocus = QApplication::focusWidget();
    return CWndState::Find(pFocus != nullptr ? pFocus : QApplication::activeWindow());
}

int CWnd::GetDlgCtrlID() const {
    return m_pState->nId;
}

CWnd* CWnd::GetParent() const {
    return m_pState->pParent;
}

CWnd* CWnd::GetDlgItem(int nId) const {
    const auto& children = m_pState->children;
    const auto found = std::find_if(children.begin(), children.end(),
                                    [nId](const CWnd* pChild) { return pChild->GetDlgCtrlID() == nId; });
    return found != children.end() ? *found : nullptr;
}

bool CWnd::SubclassDlgItem(int nId, CWnd* pParent) {
    const CWnd* const pItem = pParent != nullptr ? pParent->GetDlgItem(nId) : nullptr;
    if (pItem == nullptr || IsWindow()) {
        return false;
    }
    m_pState->TakeOver(*pItem->m_pState);
    return true;
}

bool CWnd::UpdateData() {
    if (!IsWindow()) {
        return false;
    }
    CDataExchange exchange(*this);
    DoDataExchange(&exchange);
    return !exchange.HasFailed();
}

void CWnd::DoDataExchange(CDataExchange* /*pDX*/) {}
