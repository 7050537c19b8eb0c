#include "platform/windows/MessageBox.h"

#include "platform/windows/ModalBox.h"
#include "platform/windows/WndState.h"

#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

int MessageBox(CWnd* pOwner, const CString& strText, const CString& strCaption, UINT nType) {
    if (!HasToolkit()) {
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
    box.adjustSize();
    PlaceAbove(box, pOwner);
    const CModalBox modal(pOwner, [&box] { box.reject(); });
    const std::shared_ptr<CWndLink> pOwnerLink = CWndState::LinkOf(pOwner);
    box.exec();
    ActivateOwner(pOwnerLink);
    return IDOK;
}
