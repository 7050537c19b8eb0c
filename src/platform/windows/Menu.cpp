#include "platform/windows/Menu.h"

#include "platform/windows/ModalBox.h"
#include "platform/windows/WndState.h"

#include <QtGui/QAction>
#include <QtGui/QWindow>
#include <QtWidgets/QMenu>

CMenu::CMenu() = default;
CMenu::~CMenu() = default;

bool CMenu::CreatePopupMenu() {
    if (m_pMenu || !HasToolkit()) {
        return false;
    }
    m_pMenu = std::make_unique<QMenu>();
    return true;
}

bool CMenu::AppendMenu(UINT nFlags, int nId, const CString& strText) {
    if (!m_pMenu || (nFlags & MF_POPUP) != 0) {
        return false;
    }
    QAction* const pAction = m_pMenu->addAction(QString::fromStdString(strText));
    pAction->setData(nId);
    pAction->setCheckable((nFlags & MF_CHECKED) != 0);
    pAction->setChecked((nFlags & MF_CHECKED) != 0);
    return true;
}

bool CMenu::AppendMenu(UINT nFlags, const CMenu& popup, const CString& strText) {
    if (!m_pMenu || !popup.m_pMenu || (nFlags & MF_POPUP) == 0) {
        return false;
    }
    popup.m_pMenu->setTitle(QString::fromStdString(strText));
    m_pMenu->addMenu(popup.m_pMenu.get());
    return true;
}

// The toolkit's menus take either button.
bool CMenu::TrackPopupMenu(UINT /*nFlags*/, POINT ptScreen, CWnd& owner) {
    if (!m_pMenu || !owner.IsWindow()) {
        return false;
    }
    const std::shared_ptr<CWndLink> pOwner = CWndState::LinkOf(&owner);
    // Some desktops place a popup by the window that it belongs to.
    m_pMenu->winId();
    m_pMenu->windowHandle()->setTransientParent(pOwner->pWidget->window()->windowHandle());
    const QAction* pChosen = nullptr;
    {
        const CModalBox open(&owner, [this] { m_pMenu->close(); });
        pChosen = m_pMenu->exec(QPoint(ptScreen.x, ptScreen.y));
    }
    if (pChosen != nullptr && pOwner->pState != nullptr && pOwner->pWidget != nullptr) {
        pOwner->pState->wnd.SendMessage(WM_COMMAND, MakeCommandParam(pChosen->data().toInt(), BN_CLICKED));
    }
    return true;
}
