#include "window/User.h"

#include "platform/windows/Messages.h"
#include "platform/windows/support/Toolkit.h"

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <ostream>
#include <utility>

struct CUser::Watch {
    QTimer timer;
};

void PrintTo(const ShownBox& box, std::ostream* pStream) {
    *pStream << '[' << box.strCaption << "] " << box.strText;
}

CUser::CUser() : m_pWatch(std::make_unique<Watch>()) {
    constexpr int LOOK_EVERY = 5;
    QObject::connect(&m_pWatch->timer, &QTimer::timeout, [this] { Look(); });
    m_pWatch->timer.start(LOOK_EVERY);
}

CUser::~CUser() = default;

void CUser::SetNameToType(std::optional<CString> strName) {
    m_strName = std::move(strName);
}

void CUser::LookAway() {
    m_pWatch->timer.stop();
}

void CUser::Look() {
    const QWidget* const pModal = QApplication::activeModalWidget();
    if (pModal == nullptr || !pModal->isVisible()) {
        return;
    }
    if (qobject_cast<const QMessageBox*>(pModal) != nullptr) {
        m_boxes.push_back({toolkit::ModalTitle(), toolkit::ModalText()});
        toolkit::CloseModal();
        return;
    }
    if (m_bLeaveDialogs) {
        return;
    }
    if (auto* const pEdit = pModal->findChild<QLineEdit*>(); pEdit != nullptr && m_strName) {
        pEdit->setText(QString::fromStdString(*m_strName));
    }
    for (QPushButton* const pButton : pModal->findChildren<QPushButton*>()) {
        if (pButton->property("controlId").toInt() == (m_strName ? IDOK : IDCANCEL)) {
            m_dialogs.push_back(toolkit::ModalTitle());
            pButton->click();
            return;
        }
    }
}
