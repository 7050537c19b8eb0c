#include "platform/windows/Dialog.h"

#include "platform/drawing/Font.h"
#include "platform/windows/Button.h"
#include "platform/windows/DialogUnits.h"
#include "platform/windows/Edit.h"
#include "platform/windows/Static.h"
#include "platform/windows/WinApp.h"
#include "platform/windows/WndState.h"

#include <QtCore/QEventLoop>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <array>

namespace {

constexpr int g_nTenths = 10;

// The toolkit's dialog knows Enter and the default button; its Escape becomes ours.
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

std::unique_ptr<CWnd> MakeControl(const DialogControl& control, const RECT& rc, CWnd& dialog) {
    const DWORD dwStyle = control.dwStyle | WS_CHILD | WS_VISIBLE;
    switch (control.nKind) {
        case DialogControlKind::Static: {
            auto pStatic = std::make_unique<CStatic>();
            return pStatic->Create(control.szText, dwStyle, rc, &dialog, control.nId) ? std::move(pStatic)
                                                                                      : nullptr;
        }
        case DialogControlKind::Edit: {
            auto pEdit = std::make_unique<CEdit>();
            return pEdit->Create(dwStyle, rc, &dialog, control.nId) ? std::move(pEdit) : nullptr;
        }
        case DialogControlKind::Button:
        case DialogControlKind::DefaultButton: {
            const bool bDefault = control.nKind == DialogControlKind::DefaultButton;
            auto pButton = std::make_unique<CButton>();
            return pButton->Create(control.szText, dwStyle | (bDefault ? BS_DEFPUSHBUTTON : 0), rc, &dialog,
                                   control.nId)
                       ? std::move(pButton)
                       : nullptr;
        }
    }
    return nullptr;
}

// The first control that takes the keyboard gets it, the text of an edit box selected.
void FocusFirst(const std::vector<std::unique_ptr<CWnd>>& controls) {
    for (const auto& pControl : controls) {
        QWidget& widget = *CWndState::Of(*pControl).pWidget;
        if (widget.focusPolicy() == Qt::NoFocus || !widget.isEnabled()) {
            continue;
        }
        widget.setFocus(Qt::TabFocusReason);
        return;
    }
}

}  // namespace

struct CDialog::CModalLoop {
    QEventLoop loop;
    bool bEnded = false;
};

CDialog::CDialog(const DialogTemplate& dialogTemplate, CWnd* pParent)
    : m_template(dialogTemplate),
      m_pOwner(pParent != nullptr || GetApp() == nullptr ? pParent : GetApp()->GetMainWnd()) {}

CDialog::~CDialog() = default;

const CMessageMap& CDialog::GetMessageMap() const {
    static constexpr std::array entries{MapCommand<&CDialog::OnOKCommand>(IDOK),
                                        MapCommand<&CDialog::OnCancelCommand>(IDCANCEL)};
    static const CMessageMap map{entries, &CWnd::GetMessageMap()};
    return map;
}

LRESULT CDialog::DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    if (nMessage == WM_CLOSE) {
        return SendMessage(WM_COMMAND, MakeCommandParam(IDCANCEL, BN_CLICKED), 0);
    }
    return CWnd::DefWindowProc(nMessage, wParam, lParam);
}

int CDialog::DoModal() {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr || IsWindow()) {
        return -1;
    }
    const std::shared_ptr<CWndLink> pOwner = CWndState::LinkOf(m_pOwner);
    m_nResult = IDCANCEL;
    m_pLoop = std::make_unique<CModalLoop>();
    CWndState& state = CWndState::Of(*this);
    if (!state.Attach(std::make_unique<CDialogWidget>(state.pLink),
                      {m_template.szTitle, 0, {}, m_pOwner, 0}) ||
        !CreateControls()) {
        DestroyWindow();
        m_controls.clear();
        m_pLoop.reset();
        return -1;
    }
    if (OnInitDialog()) {
        FocusFirst(m_controls);
    }
    if (!m_pLoop->bEnded && IsWindow()) {
        PlaceAbove(*state.pWidget, m_pOwner);
        state.pWidget->show();
        m_pLoop->loop.exec(QEventLoop::DialogExec);
    }
    DestroyWindow();
    ActivateOwner(pOwner);
    m_controls.clear();
    m_pLoop.reset();
    return m_nResult;
}

bool CDialog::CreateControls() {
    CFont font;
    if (!font.CreatePointFont(m_template.nPointSize * g_nTenths, m_template.szFace)) {
        return false;
    }
    QWidget& widget = *CWndState::Of(*this).pWidget;
    widget.setFont(ToToolkitFont(font));
    const CDialogUnits units(widget.font());
    const int nWidth = units.X(m_template.cx);
    const int nHeight = units.Y(m_template.cy);
    CWndState::Of(*this).SetClientSize(nWidth, nHeight);
    widget.setFixedSize(nWidth, nHeight);
    for (const DialogControl& control : m_template.controls) {
        std::unique_ptr<CWnd> pControl =
            MakeControl(control, units.Rect(control.x, control.y, control.cx, control.cy), *this);
        if (!pControl) {
            return false;
        }
        m_controls.push_back(std::move(pControl));
    }
    return true;
}

void CDialog::EndDialog(int nResult) {
    if (!m_pLoop || m_pLoop->bEnded) {
        return;
    }
    m_nResult = nResult;
    m_pLoop->bEnded = true;
    m_pLoop->loop.quit();
}

// The window can also go without the dialog's own doing: with its owner.
void CDialog::PostNcDestroy() {
    EndDialog(IDCANCEL);
}

void CDialog::SetDlgItemText(int nId, const CString& strText) {
    if (CWnd* const pItem = GetDlgItem(nId)) {
        pItem->SetWindowText(strText);
    }
}

CString CDialog::GetDlgItemText(int nId) const {
    const CWnd* const pItem = GetDlgItem(nId);
    return pItem != nullptr ? pItem->GetWindowText() : CString();
}

bool CDialog::OnInitDialog() {
    return true;
}

void CDialog::OnOK() {
    EndDialog(IDOK);
}

void CDialog::OnCancel() {
    EndDialog(IDCANCEL);
}

void CDialog::OnOKCommand() {
    OnOK();
}

void CDialog::OnCancelCommand() {
    OnCancel();
}
