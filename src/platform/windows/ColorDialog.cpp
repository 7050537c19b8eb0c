#include "platform/windows/ColorDialog.h"

#include "platform/windows/ModalBox.h"
#include "platform/windows/ModalLoop.h"
#include "platform/windows/WndState.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QPushButton>

namespace {

void NameButtons(const QColorDialog& dialog) {
    const auto* const pBox = dialog.findChild<QDialogButtonBox*>();
    if (pBox != nullptr) {
        pBox->button(QDialogButtonBox::Ok)->setText(QStringLiteral("确定"));
        pBox->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("取消"));
    }
}

}  // namespace

CColorDialog::CColorDialog(COLORREF clrInit, CWnd* pParent) : m_clr(clrInit), m_pOwner(pParent) {}

int CColorDialog::DoModal() {
    if (!HasToolkit()) {
        return IDCANCEL;
    }
    const CWnd* const pOwner =
        OwnerOf(m_pOwner != nullptr ? m_pOwner : CWndState::Find(QApplication::activeModalWidget()));
    QColorDialog dialog(QColor(GetRed(m_clr), GetGreen(m_clr), GetBlue(m_clr)));
    // The desktop's own dialog would be another program's window, with a life of its own.
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    dialog.setWindowTitle(QStringLiteral("颜色"));
    dialog.setWindowModality(Qt::ApplicationModal);
    NameButtons(dialog);
    dialog.adjustSize();
    PlaceAbove(dialog, pOwner);
    const CModalBox modal(pOwner, [&dialog] { dialog.reject(); });
    const std::shared_ptr<CWndLink> pOwnerLink = CWndState::LinkOf(pOwner);
    const bool bAccepted = dialog.exec() == QDialog::Accepted;
    ActivateOwner(pOwnerLink);
    if (!bAccepted) {
        return IDCANCEL;
    }
    const QColor color = dialog.selectedColor();
    m_clr = MakeColor(color.red(), color.green(), color.blue());
    return IDOK;
}
