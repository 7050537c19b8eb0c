#include "platform/windows/Dialog.h"

#include "platform/windows/DialogControls.h"
#include "platform/windows/ModalLoop.h"
#include "platform/windows/WndState.h"

#include <QtWidgets/QWidget>
#include <array>
#include <utility>

namespace {

// The first control that takes the keyboard gets it, the text of an edit box selected.
void FocusFirst(const CWndState& dialog) {
    for (const CWnd* const pControl : dialog.children) {
        QWidget& widget = *CWndState::Of(*pControl).pWidget;
        if (widget.focusPolicy() == Qt::NoFocus || !widget.isEnabled()) {
            continue;
        }
        widget.setFocus(Qt::TabFocusReason);
        return;
    }
}

}  // namespace

CDialog::CDialog(const DialogTemplate& dialogTemplate, CWnd* pParent)
    : m_template(dialogTemplate), m_pOwner(OwnerOf(pParent)) {}

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
    if (!HasToolkit() || IsWindow()) {
        return -1;
    }
    const std::shared_ptr<CWndLink> pOwner = CWndState::LinkOf(m_pOwner);
    m_pLoop = std::make_unique<CModalLoop>();
    CWndState& state = CWndState::Of(*this);
    state.bDialog = true;
    if (!state.Attach(MakeDialogWidget(state.pLink), {m_template.szTitle, 0, {}, m_pOwner, 0}) ||
        !CreateControls()) {
        DestroyWindow();
        m_controls.clear();
        m_pLoop.reset();
        return -1;
    }
    if (OnInitDialog()) {
        FocusFirst(state);
    }
    m_pLoop->Run(*this, m_pOwner);
    DestroyWindow();
    ActivateOwner(pOwner);
    m_controls.clear();
    return std::exchange(m_pLoop, nullptr)->GetResult();
}

bool CDialog::CreatePage(CWnd* pParent) {
    if (pParent == nullptr || !pParent->IsWindow() || IsWindow()) {
        return false;
    }
    CWndState& state = CWndState::Of(*this);
    state.bDialog = true;
    if (!state.Attach(std::make_unique<QWidget>(), {m_template.szTitle, WS_CHILD, {}, pParent, 0}) ||
        !CreateControls()) {
        DestroyWindow();
        m_controls.clear();
        return false;
    }
    OnInitDialog();
    return IsWindow();
}

bool CDialog::CreateControls() {
    CWndState& state = CWndState::Of(*this);
    const RECT rc = MeasureDialog(m_template);
    m_controls = MakeControls(m_template, *this);
    if (m_controls.size() != m_template.controls.size()) {
        return false;
    }
    if (state.IsTopLevel()) {
        state.SetClientSize(rc.Width(), rc.Height());
        state.pWidget->setFixedSize(rc.Width(), rc.Height());
    } else {
        state.pWidget->resize(rc.Width(), rc.Height());
    }
    state.bPaintDue = true;
    return true;
}

void CDialog::EndDialog(int nResult) {
    if (m_pLoop) {
        m_pLoop->End(nResult);
    }
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
    if (!UpdateData()) {
        EndDialog(-1);
        return false;
    }
    return true;
}

void CDialog::OnOK() {
    if (UpdateData()) {
        EndDialog(IDOK);
    }
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
