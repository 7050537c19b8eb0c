#include "platform/windows/ComboBox.h"

#include "platform/windows/WndState.h"

#include <QtCore/QEvent>
#include <QtGui/QHelpEvent>
#include <QtGui/QScreen>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyleOptionComboBox>
#include <QtWidgets/QToolTip>
#include <algorithm>

namespace {

class CComboWidget final : public QComboBox {
public:
    CComboWidget(std::shared_ptr<CWndLink> pLink, int nRoom) : m_pLink(std::move(pLink)), m_nRoom(nRoom) {
        setFocusPolicy(Qt::StrongFocus);
        connect(this, &QComboBox::activated, this, [this] {
            if (CWndState* const pState = m_pLink->StateFor(this)) {
                pState->NotifyParent(CBN_SELCHANGE);
            }
        });
    }

    void Insert(int nRow, const QString& text) {
        const int nSelected = currentIndex();
        insertItem(nRow, text);
        if (nSelected < 0) {
            // The toolkit would select the first row that comes.
            setCurrentIndex(-1);
        }
    }

    // All of the rows' texts can be read in the open list.
    void showPopup() override {
        const int nBars = view()->verticalScrollBar()->sizeHint().width() + 2 * view()->frameWidth();
        const int nWanted = std::max(width(), view()->sizeHintForColumn(0) + nBars);
        const int nWidest = screen() != nullptr ? screen()->availableGeometry().width() : nWanted;
        view()->setMinimumWidth(std::min(nWanted, nWidest));
        QComboBox::showPopup();
    }

protected:
    bool event(QEvent* pEvent) override {
        if (pEvent->type() == QEvent::ToolTip) {
            const auto& help = static_cast<const QHelpEvent&>(*pEvent);
            QToolTip::showText(help.globalPos(), IsTextCut() ? currentText() : QString(), this);
            return true;
        }
        return QComboBox::event(pEvent);
    }
    // Closed it is as high as its text needs; the rest of the rectangle is for the rows of the list.
    void changeEvent(QEvent* pEvent) override {
        QComboBox::changeEvent(pEvent);
        if (pEvent->type() == QEvent::FontChange) {
            ShareRoom();
        }
    }
    void showEvent(QShowEvent* pEvent) override {
        ShareRoom();
        QComboBox::showEvent(pEvent);
    }
    // A wheel that only comes by changes no choice.
    void wheelEvent(QWheelEvent* pEvent) override {
        if (hasFocus()) {
            QComboBox::wheelEvent(pEvent);
        } else {
            pEvent->ignore();
        }
    }

private:
    void ShareRoom() {
        resize(width(), sizeHint().height());
        const int nRow = fontMetrics().height() + 2;
        setMaxVisibleItems(std::max((m_nRoom - height()) / nRow, 1));
    }
    bool IsTextCut() const {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        const QRect field =
            style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
        return fontMetrics().horizontalAdvance(currentText()) > field.width();
    }

    const std::shared_ptr<CWndLink> m_pLink;
    const int m_nRoom;
};

int Insert(CComboWidget& combo, int nRow, const QString& text) {
    const int nAt = nRow == -1 ? combo.count() : nRow;
    if (nAt < 0 || nAt > combo.count()) {
        return CB_ERR;
    }
    combo.Insert(nAt, text);
    return nAt;
}

int Select(QComboBox& combo, int nRow) {
    const int nSelected = nRow >= 0 && nRow < combo.count() ? nRow : CB_ERR;
    combo.setCurrentIndex(nSelected);
    return nSelected;
}

}  // namespace

bool CComboBox::Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId) {
    if (!HasToolkit()) {
        return false;
    }
    CWndState& state = CWndState::Of(*this);
    return state.Attach(std::make_unique<CComboWidget>(state.pLink, rc.Height()),
                        {{}, dwStyle | WS_CHILD, rc, pParent, nId});
}

LRESULT CComboBox::DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    auto* const pCombo = dynamic_cast<CComboWidget*>(CWndState::Of(*this).pWidget.get());
    if (pCombo == nullptr) {
        return CWnd::DefWindowProc(nMessage, wParam, lParam);
    }
    const int nRow = static_cast<int>(wParam);
    switch (nMessage) {
        case CB_INSERTSTRING:
            return Insert(*pCombo, nRow, QString::fromUtf8(TextOfParam(lParam)));
        case CB_GETCURSEL:
            return pCombo->currentIndex();
        case CB_SETCURSEL:
            return Select(*pCombo, nRow);
        default:
            return CWnd::DefWindowProc(nMessage, wParam, lParam);
    }
}

int CComboBox::InsertString(int nIndex, const CString& strText) {
    return Ask(CB_INSERTSTRING, nIndex, MakeTextParam(strText));
}

int CComboBox::GetCurSel() {
    return Ask(CB_GETCURSEL, 0, 0);
}

int CComboBox::SetCurSel(int nIndex) {
    return Ask(CB_SETCURSEL, nIndex, 0);
}

int CComboBox::Ask(UINT nMessage, int nParam, LPARAM lParam) {
    return IsWindow() ? static_cast<int>(SendMessage(nMessage, static_cast<WPARAM>(nParam), lParam)) : CB_ERR;
}
