#include "platform/windows/MessageBox.h"

#include "platform/windows/ModalBox.h"
#include "platform/windows/WndState.h"

#include <QtGui/QShowEvent>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace {

// Stands above its owner with the size that it has on the screen: a long text is wrapped when it is shown.
class CBox final : public QMessageBox {
public:
    explicit CBox(const CWnd* pOwner) : m_pOwner(pOwner) {}

protected:
    void showEvent(QShowEvent* pEvent) override {
        QMessageBox::showEvent(pEvent);
        if (!pEvent->spontaneous()) {
            PlaceAbove(*this, m_pOwner);
        }
    }

private:
    const CWnd* const m_pOwner;
};

}  // namespace

int MessageBox(CWnd* pOwner, const CString& strText, const CString& strCaption, UINT nType) {
    if (!HasToolkit()) {
        return IDOK;
    }
    CBox box(pOwner);
    box.setWindowModality(Qt::ApplicationModal);
    box.setTextFormat(Qt::PlainText);
    box.setText(QString::fromStdString(strText));
    box.setWindowTitle(QString::fromStdString(strCaption));
    box.setIcon((nType & MB_ICONEXCLAMATION) == MB_ICONEXCLAMATION ? QMessageBox::Warning
                                                                   : QMessageBox::NoIcon);
    box.addButton(QStringLiteral("确定"), QMessageBox::AcceptRole);
    const CModalBox modal(pOwner, [&box] { box.reject(); });
    const std::shared_ptr<CWndLink> pOwnerLink = CWndState::LinkOf(pOwner);
    box.exec();
    ActivateOwner(pOwnerLink);
    return IDOK;
}
