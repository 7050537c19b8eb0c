#include "platform/windows/MessageBox.h"

#include "platform/windows/WndState.h"

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

int MessageBox(CWnd* pOwner, const CString& strText, const CString& strCaption, UINT nType) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        return IDOK;
    }
    QMessageBox box;
    box.setWindowModality(Qt::ApplicationModal);
    box.setTextFormat(Qt::PlainText);
    box.setText(QString::fromStdString(strText));
    box.setWindowTitle(QString::fromStdString(strCaption));
    box.setIcon((nType & MB_ICONEXCLAMATION) == MB_ICONEXCLAMATION ? QMessageBox::Warning
                                                                   : QMessageBox::NoIcon);
    box.addButton(QStringLiteral("确定"), QMessageBox::AcceptRole);
    // The owner's widget must not own the box, which lives here, but it stays below it.
    if (pOwner != nullptr && pOwner->IsWindowVisible()) {
        box.winId();
        box.windowHandle()->setTransientParent(CWndState::Of(*pOwner).pWidget->window()->windowHandle());
        box.adjustSize();
        CenterWidget(box, pOwner);
    }
    const CModalBox modal(pOwner, [&box] { box.reject(); });
    box.exec();
    return IDOK;
}
