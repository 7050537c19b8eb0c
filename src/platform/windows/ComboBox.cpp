#include "platform/windows/ComboBox.h"

#include "platform/windows/WndState.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>

bool CComboBox::Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        return false;
    }
    return CWndState::Of(*this).Attach(std::make_unique<QComboBox>(),
                                       {{}, dwStyle | WS_CHILD, rc, pParent, nId});
}
