#include "platform/windows/ModalLoop.h"

#include "platform/windows/WinApp.h"
#include "platform/windows/WndState.h"

#include <QtCore/QEventLoop>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>

namespace {

class CDialogWidget final : public QDialog {
public:
    explicit CDialogWidget(std::shared_ptr<CWndLink> pLink)
        : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                               Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
          m_pLink(std::move(pLink)) {
        setWindowModality(Qt::ApplicationModal);
        setContextMenuPolicy(Qt::PreventContextMenu);
    }

    void reject() override {
        if (CWndState* const pState = m_pLink->StateFor(this)) {
            pState->wnd.SendMessage(WM_COMMAND, MakeCommandParam(IDCANCEL, BN_CLICKED), 0);
        }
    }

private:
    const std::shared_ptr<CWndLink> m_pLink;
};

}  // namespace

std::unique_ptr<QWidget> MakeDialogWidget(const std::shared_ptr<CWndLink>& pLink) {
    return std::make_unique<CDialogWidget>(pLink);
}

CWnd* OwnerOf(CWnd* pParent) {
    if (pParent != nullptr) {
        return pParent;
    }
    CWnd* const pMainWnd = GetApp() != nullptr ? GetApp()->GetMainWnd() : nullptr;
    return pMainWnd != nullptr ? pMainWnd : CWndState::Find(QApplication::activeWindow());
}

CModalLoop::CModalLoop() : m_pLoop(std::make_unique<QEventLoop>()) {}

CModalLoop::~CModalLoop() = default;

void CModalLoop::Run(const CWnd& wnd, const CWnd* pOwner) {
    if (m_bEnded || !wnd.IsWindow()) {
        return;
    }
    QWidget& widget = *CWndState::Of(wnd).pWidget;
    PlaceAbove(widget, pOwner);
    widget.show();
    m_pLoop->exec(QEventLoop::DialogExec);
}

void CModalLoop::End(int nResult) {
    if (!m_bEnded) {
        m_nResult = nResult;
        m_bEnded = true;
        m_pLoop->quit();
    }
}
