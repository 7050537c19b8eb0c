#include "platform/windows/Static.h"

#include "platform/windows/WndState.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>

bool CStatic::Create(const CString& strText, DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        return false;
    }
    auto pLabel = std::make_unique<QLabel>();
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    pLabel->setWordWrap(true);
    pLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    return CWndState::Of(*this).Attach(std::move(pLabel), {strText, dwStyle | WS_CHILD, rc, pParent, nId});
}
