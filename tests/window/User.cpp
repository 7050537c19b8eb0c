#include "window/User.h"

#include "platform/base/String.h"
#include "platform/windows/Messages.h"
#include "platform/windows/Wnd.h"
#include "platform/windows/support/Toolkit.h"

#include <QtCore/QTimer>

CUser::CUser() : m_pTimer(std::make_unique<QTimer>()) {
    constexpr int LOOK_EVERY = 5;
    QObject::connect(m_pTimer.get(), &QTimer::timeout, [this] { Look(); });
    m_pTimer->start(LOOK_EVERY);
}

CUser::~CUser() = default;

void CUser::Look() {
    constexpr int NAME_EDIT = 1000;
    const CString strTitle = toolkit::ModalTitle();
    const CString strText = toolkit::ModalText();
    if (!strText.empty()) {
        m_boxes.push_back(FormatText("[%s] %s", strTitle.c_str(), strText.c_str()));
        toolkit::CloseModal();
    } else if (!strTitle.empty() && !m_bLeaveDialogs) {
        const CWnd* const pEdit = CWnd::GetFocus();
        if (m_strName && (pEdit == nullptr || pEdit->GetDlgCtrlID() != NAME_EDIT)) {
            return;  // it is still coming up
        }
        if (m_strName) {
            toolkit::Compose(*pEdit, "", *m_strName);
        }
        ++m_nDialogs;
        toolkit::ClickInModal(m_strName ? IDOK : IDCANCEL);
    }
}
