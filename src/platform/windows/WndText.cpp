#include "platform/windows/Messages.h"
#include "platform/windows/WndState.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

void SetWidgetText(QWidget& widget, const CString& strText) {
    const QString text = QString::fromStdString(strText);
    if (auto* const pLabel = qobject_cast<QLabel*>(&widget)) {
        pLabel->setText(text);
    } else if (auto* const pButton = qobject_cast<QAbstractButton*>(&widget)) {
        pButton->setText(text);
    } else if (auto* const pGroup = qobject_cast<QGroupBox*>(&widget)) {
        pGroup->setTitle(text);
    } else if (auto* const pEdit = qobject_cast<QLineEdit*>(&widget)) {
        const QSignalBlocker quiet(pEdit);
        pEdit->setText(text);
    } else {
        widget.setWindowTitle(text);
    }
}

void CWnd::SetWindowText(const CString& strText) {
    CWndState& state = *m_pState;
    {
        const std::lock_guard lock(state.textLock);
        state.strText = strText;
    }
    if (std::this_thread::get_id() != state.threadId) {
        state.bTextPending = true;
        return;
    }
    state.bTextPending = false;
    if (!state.pWidget) {
        return;
    }
    SetWidgetText(*state.pWidget, strText);
    if (qobject_cast<const QLineEdit*>(state.pWidget.get()) != nullptr) {
        state.NotifyParent(EN_CHANGE);
    }
}

CString CWnd::GetWindowText() const {
    const CWndState& state = *m_pState;
    // What the user has typed stands in the widget alone.
    if (std::this_thread::get_id() == state.threadId) {
        if (const auto* const pEdit = qobject_cast<const QLineEdit*>(state.pWidget.get())) {
            return pEdit->text().toStdString();
        }
    }
    const std::lock_guard lock(state.textLock);
    return state.strText;
}

void CWnd::SetAccessibleName(const CString& strName) {
    if (m_pState->pWidget) {
        m_pState->pWidget->setAccessibleName(QString::fromStdString(strName));
    }
}

void CWnd::SetAccessibleDescription(const CString& strDescription) {
    const QString description = QString::fromStdString(strDescription);
    if (m_pState->pWidget && m_pState->pWidget->accessibleDescription() != description) {
        m_pState->pWidget->setAccessibleDescription(description);
    }
}
