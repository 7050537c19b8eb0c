#include "platform/windows/Edit.h"

#include "platform/windows/WndState.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <limits>

bool CEdit::Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        return false;
    }
    auto pEdit = std::make_unique<QLineEdit>();
    pEdit->setMaxLength(std::numeric_limits<int>::max());
    return CWndState::Of(*this).Attach(std::move(pEdit), {{}, dwStyle | WS_CHILD, rc, pParent, nId});
}
