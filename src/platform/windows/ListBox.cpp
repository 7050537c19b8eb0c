#include "platform/windows/ListBox.h"

#include "platform/windows/DialogUnits.h"
#include "platform/windows/OneLine.h"
#include "platform/windows/WndState.h"

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtGui/QTextOption>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QStyledItemDelegate>
#include <bit>
#include <utility>

namespace {

constexpr int FIRST_TAB_STOPS = 32;
constexpr int READABLE = 0x40;

// A row is one line high, whatever its text holds.
class CRows : public QStyledItemDelegate {
public:
    QString displayText(const QVariant& value, const QLocale& locale) const override {
        return OneLine(QStyledItemDelegate::displayText(value, locale));
    }
};

// Draws a row whose text has columns.
class CTabbedRows final : public CRows {
public:
    void SetTabStops(int nUnits) { m_nUnits = nUnits; }

    void paint(QPainter* pPainter, const QStyleOptionViewItem& given,
               const QModelIndex& index) const override {
        QStyleOptionViewItem option(given);
        initStyleOption(&option, index);
        const QString text = std::exchange(option.text, QString());
        QStyle& style = *option.widget->style();
        style.drawControl(QStyle::CE_ItemViewItem, &option, pPainter, option.widget);

        const bool bEnabled = option.state.testFlag(QStyle::State_Enabled);
        const bool bSelected = option.state.testFlag(QStyle::State_Selected);
        pPainter->setFont(option.font);
        pPainter->setPen(option.palette.color(bEnabled ? QPalette::Active : QPalette::Disabled,
                                              bSelected ? QPalette::HighlightedText : QPalette::Text));
        QTextOption columns(Qt::AlignLeft | Qt::AlignVCenter);
        columns.setWrapMode(QTextOption::NoWrap);
        columns.setTabStopDistance(CDialogUnits(option.font).ExactX(m_nUnits));
        const int nMargin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &option, option.widget) + 1;
        pPainter->drawText(QRectF(option.rect.adjusted(nMargin, 0, 0, 0)), text, columns);
    }

private:
    int m_nUnits = FIRST_TAB_STOPS;
};

class CListWidget final : public QListWidget {
public:
    CListWidget(std::shared_ptr<CWndLink> pLink, DWORD dwStyle, int nRoom)
        : m_pLink(std::move(pLink)), m_bNotify((dwStyle & LBS_NOTIFY) != 0), m_nRoom(nRoom) {
        if ((dwStyle & LBS_USETABSTOPS) != 0) {
            m_pTabbedRows = std::make_unique<CTabbedRows>();
        }
        setItemDelegate(m_pTabbedRows ? m_pTabbedRows.get() : &m_rows);
        // What can't be picked from is still there to be read.
        QPalette readable(palette());
        readable.setColor(QPalette::Disabled, QPalette::Text, QColor(READABLE, READABLE, READABLE));
        setPalette(readable);
        setSelectionMode(QAbstractItemView::SingleSelection);
        setEditTriggers(QAbstractItemView::NoEditTriggers);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
        setUniformItemSizes(true);
        setTextElideMode(Qt::ElideNone);
        setFrameStyle(static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Plain));
        setContextMenuPolicy(Qt::PreventContextMenu);
        connect(this, &QListWidget::itemSelectionChanged, this, [this] { OnSelectionChange(); });
    }

    int GetSelected() const {
        const QModelIndexList rows = selectionModel()->selectedRows();
        return rows.isEmpty() ? LB_ERR : rows.front().row();
    }
    void Select(int nRow) {
        m_bByCode = true;
        if (nRow < 0) {
            clearSelection();
            setCurrentRow(-1);
        } else {
            setCurrentRow(nRow, QItemSelectionModel::ClearAndSelect);
            scrollToItem(item(nRow));
        }
        m_nSelected = GetSelected();
        m_bByCode = false;
    }
    bool SetTabStops(int nUnits) {
        if (!m_pTabbedRows) {
            return false;
        }
        m_pTabbedRows->SetTabStops(nUnits);
        viewport()->update();
        return true;
    }
    void Insert(int nRow, const QString& text) {
        insertItem(nRow, text);
        m_nSelected = GetSelected();
        ShowWholeRows();
    }
    void Delete(int nRow) {
        const int nSelected = GetSelected();
        m_bByCode = true;
        const std::unique_ptr<QListWidgetItem> pItem(takeItem(nRow));
        m_bByCode = false;
        // The toolkit would move the selection on.
        if (nSelected == nRow) {
            Select(-1);
        }
        m_nSelected = GetSelected();
    }

protected:
    void changeEvent(QEvent* pEvent) override {
        QListWidget::changeEvent(pEvent);
        if (pEvent->type() == QEvent::FontChange) {
            ShowWholeRows();
        }
    }

    // One row stays selected, whichever keys are held while the mouse is used.
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* pEvent) const override {
        const auto flags = QListWidget::selectionCommand(index, pEvent);
        constexpr auto nMaskOut = QItemSelectionModel::Toggle | QItemSelectionModel::Deselect;
        return (flags & nMaskOut) && index.isValid()
                   ? QItemSelectionModel::SelectionFlags(QItemSelectionModel::ClearAndSelect)
                   : flags;
    }

private:
    // No row is cut off at the lower edge: the box gives up what is left of its height.
    void ShowWholeRows() {
        const int nRow = sizeHintForRow(0);
        const int nRows = nRow > 0 ? (m_nRoom - 2 * frameWidth()) / nRow : 0;
        if (nRows > 0) {
            resize(width(), nRows * nRow + 2 * frameWidth());
        }
    }

    void OnSelectionChange() {
        const int nSelected = GetSelected();
        if (m_bByCode || nSelected == m_nSelected) {
            return;
        }
        m_nSelected = nSelected;
        CWndState* const pState = m_pLink->StateFor(this);
        if (m_bNotify && pState != nullptr) {
            pState->NotifyParent(LBN_SELCHANGE);
        }
    }

    const std::shared_ptr<CWndLink> m_pLink;
    const bool m_bNotify;
    const int m_nRoom;
    CRows m_rows;
    std::unique_ptr<CTabbedRows> m_pTabbedRows;
    bool m_bByCode = false;
    int m_nSelected = LB_ERR;
};

CListWidget* ListOf(const CWnd& wnd) {
    return dynamic_cast<CListWidget*>(CWndState::Of(wnd).pWidget.get());
}

QString RowText(LPARAM lParam) {
    return QString::fromUtf8(TextOfParam(lParam));
}

bool IsRow(const QListWidget& list, int nRow) {
    return nRow >= 0 && nRow < list.count();
}

int Insert(CListWidget& list, int nRow, const QString& text) {
    const int nAt = nRow == -1 ? list.count() : nRow;
    if (nAt < 0 || nAt > list.count()) {
        return LB_ERR;
    }
    list.Insert(nAt, text);
    return nAt;
}

int Delete(CListWidget& list, int nRow) {
    if (!IsRow(list, nRow)) {
        return LB_ERR;
    }
    list.Delete(nRow);
    return list.count();
}

int Select(CListWidget& list, int nRow) {
    const bool bRow = IsRow(list, nRow);
    list.Select(bRow ? nRow : -1);
    return bRow ? nRow : LB_ERR;
}

int Find(const QListWidget& list, int nStartAfter, const QString& prefix) {
    const int nCount = list.count();
    const int nFirst = IsRow(list, nStartAfter) ? nStartAfter + 1 : 0;
    for (int i = 0; i < nCount; ++i) {
        const int nRow = (nFirst + i) % nCount;
        if (list.item(nRow)->text().startsWith(prefix, Qt::CaseInsensitive)) {
            return nRow;
        }
    }
    return LB_ERR;
}

}  // namespace

bool CListBox::Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId) {
    if (!HasToolkit()) {
        return false;
    }
    CWndState& state = CWndState::Of(*this);
    auto pList = std::make_unique<CListWidget>(state.pLink, dwStyle, rc.Height());
    return state.Attach(std::move(pList), {{}, dwStyle | WS_CHILD, rc, pParent, nId});
}

LRESULT CListBox::DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    CListWidget* const pList = ListOf(*this);
    if (pList == nullptr) {
        return CWnd::DefWindowProc(nMessage, wParam, lParam);
    }
    const int nRow = static_cast<int>(wParam);
    switch (nMessage) {
        case LB_ADDSTRING:
            return Insert(*pList, -1, RowText(lParam));
        case LB_INSERTSTRING:
            return Insert(*pList, nRow, RowText(lParam));
        case LB_DELETESTRING:
            return Delete(*pList, nRow);
        case LB_GETCOUNT:
            return pList->count();
        case LB_GETCURSEL:
            return pList->GetSelected();
        case LB_SETCURSEL:
            return Select(*pList, nRow);
        case LB_FINDSTRING:
            return Find(*pList, nRow, RowText(lParam));
        case LB_SETTABSTOPS:
            return wParam == 1 && pList->SetTabStops(*std::bit_cast<const int*>(lParam)) ? 1 : 0;
        default:
            return CWnd::DefWindowProc(nMessage, wParam, lParam);
    }
}

int CListBox::AddString(const CString& strText) {
    return Ask(LB_ADDSTRING, 0, MakeTextParam(strText));
}

int CListBox::InsertString(int nIndex, const CString& strText) {
    return Ask(LB_INSERTSTRING, nIndex, MakeTextParam(strText));
}

int CListBox::DeleteString(int nIndex) {
    return Ask(LB_DELETESTRING, nIndex, 0);
}

int CListBox::GetCount() {
    return IsWindow() ? Ask(LB_GETCOUNT, 0, 0) : 0;
}

int CListBox::GetCurSel() {
    return Ask(LB_GETCURSEL, 0, 0);
}

int CListBox::SetCurSel(int nIndex) {
    return Ask(LB_SETCURSEL, nIndex, 0);
}

int CListBox::FindString(int nStartAfter, const CString& strPrefix) {
    return Ask(LB_FINDSTRING, nStartAfter, MakeTextParam(strPrefix));
}

bool CListBox::SetTabStops(int nEachStop) {
    return Ask(LB_SETTABSTOPS, 1, std::bit_cast<LPARAM>(&nEachStop)) == 1;
}

CString CListBox::GetText(int nIndex) const {
    const CListWidget* const pList = ListOf(*this);
    return pList != nullptr && IsRow(*pList, nIndex) ? pList->item(nIndex)->text().toStdString() : CString();
}

int CListBox::Ask(UINT nMessage, int nParam, LPARAM lParam) {
    return IsWindow() ? static_cast<int>(SendMessage(nMessage, static_cast<WPARAM>(nParam), lParam)) : LB_ERR;
}
