#include "platform/windows/PropertySheet.h"

#include "platform/windows/DialogControls.h"
#include "platform/windows/DialogUnits.h"
#include "platform/windows/ModalLoop.h"
#include "platform/windows/PropertyPage.h"
#include "platform/windows/WndState.h"

#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>
#include <algorithm>
#include <array>
#include <utility>

namespace {

// Dialog units.
constexpr int MARGIN = 4;
constexpr int BUTTON_WIDTH = 50;
constexpr int BUTTON_HEIGHT = 14;

QTabWidget* TabsOf(const CWnd& sheet) {
    const auto& pWidget = CWndState::Of(sheet).pWidget;
    return pWidget ? pWidget->findChild<QTabWidget*>() : nullptr;
}

}  // namespace

CPropertySheet::CPropertySheet(CString strCaption, CWnd* pParent, std::size_t nFirstPage)
    : m_strCaption(std::move(strCaption)), m_pOwner(OwnerOf(pParent)), m_nFirstPage(nFirstPage) {}

CPropertySheet::~CPropertySheet() = default;

const CMessageMap& CPropertySheet::GetMessageMap() const {
    static constexpr std::array entries{MapCommand<&CPropertySheet::OnOK>(IDOK),
                                        MapCommand<&CPropertySheet::OnCancel>(IDCANCEL)};
    static const CMessageMap map{entries, &CWnd::GetMessageMap()};
    return map;
}

LRESULT CPropertySheet::DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    if (nMessage == WM_CLOSE) {
        return SendMessage(WM_COMMAND, MakeCommandParam(IDCANCEL, BN_CLICKED), 0);
    }
    return CWnd::DefWindowProc(nMessage, wParam, lParam);
}

void CPropertySheet::AddPage(CPropertyPage* pPage) {
    pPage->m_pSheet = this;
    m_pages.push_back(pPage);
}

int CPropertySheet::DoModal() {
    if (!HasToolkit() || IsWindow() || m_nFirstPage >= m_pages.size()) {
        return -1;
    }
    const std::shared_ptr<CWndLink> pOwner = CWndState::LinkOf(m_pOwner);
    m_pLoop = std::make_unique<CModalLoop>();
    CWndState& state = CWndState::Of(*this);
    if (!state.Attach(MakeDialogWidget(state.pLink), {m_strCaption, 0, {}, m_pOwner, 0}) ||
        !CreateControls()) {
        DestroyWindow();
        m_pLoop.reset();
        return -1;
    }
    m_pLoop->Run(*this, m_pOwner);
    DestroyWindow();
    ActivateOwner(pOwner);
    return std::exchange(m_pLoop, nullptr)->GetResult();
}

// The tabs hold an empty area for each page, as large as the largest of them needs; the page moves in when it
// is wanted.
bool CPropertySheet::CreateControls() {
    CWndState& state = CWndState::Of(*this);
    RECT rcLargest;
    for (const CPropertyPage* const pPage : m_pages) {
        const RECT rc = MeasureDialog(pPage->GetTemplate());
        rcLargest = {0, 0, std::max(rcLargest.right, rc.right), std::max(rcLargest.bottom, rc.bottom)};
    }
    auto pTabs = std::make_unique<QTabWidget>(state.pWidget.get());
    for (CPropertyPage* const pPage : m_pages) {
        pPage->m_bModified = false;
        auto pArea = std::make_unique<QWidget>();
        pArea->setFixedSize(rcLargest.right, rcLargest.bottom);
        pTabs->addTab(pArea.get(), QString::fromUtf8(pPage->GetTemplate().szTitle));
        static_cast<void>(pArea.release());
    }
    const CDialogUnits units(state.pWidget->font());
    const QSize size = pTabs->minimumSizeHint();
    pTabs->setGeometry(units.X(MARGIN), units.Y(MARGIN), size.width(), size.height());
    const QRect place = pTabs->geometry();
    pTabs->setCurrentIndex(static_cast<int>(m_nFirstPage));
    QObject::connect(pTabs.get(), &QTabWidget::currentChanged, pTabs.get(),
                     [this, pLink = state.pLink, pWidget = state.pWidget.get()](int nPage) {
                         if (pLink->StateFor(pWidget) != nullptr) {
                             ShowPage(nPage);
                         }
                     });
    // The sheet's widget owns them from here on.
    const QTabWidget& tabs = *pTabs.release();
    if (!CreateButtons(
            {place.left(), place.top(), place.left() + size.width(), place.top() + size.height()})) {
        return false;
    }
    ShowPage(tabs.currentIndex());
    EnableApply();
    return true;
}

bool CPropertySheet::CreateButtons(const RECT& rcTabs) {
    struct Place {
        CButton& button;
        const char* szText;
        int nId;
        DWORD dwStyle;
    };
    const std::array buttons{Place{m_btnOK, "确定", IDOK, BS_DEFPUSHBUTTON},
                             Place{m_btnCancel, "取消", IDCANCEL, 0},
                             Place{m_btnApply, "应用(&A)", ID_APPLY_NOW, 0}};
    CWndState& state = CWndState::Of(*this);
    const CDialogUnits units(state.pWidget->font());
    const int nWidth = units.X(BUTTON_WIDTH);
    const int nHeight = units.Y(BUTTON_HEIGHT);
    const int nGap = units.X(MARGIN);
    const int nTop = rcTabs.bottom + units.Y(MARGIN);
    int x = rcTabs.right + nGap - static_cast<int>(buttons.size()) * (nWidth + nGap);
    for (const Place& place : buttons) {
        const RECT rc{x, nTop, x + nWidth, nTop + nHeight};
        if (!place.button.Create(place.szText, WS_VISIBLE | WS_TABSTOP | place.dwStyle, rc, this,
                                 place.nId)) {
            return false;
        }
        x += nWidth + nGap;
    }
    const int nSheetWidth = rcTabs.right + nGap;
    const int nSheetHeight = nTop + nHeight + units.Y(MARGIN);
    state.SetClientSize(nSheetWidth, nSheetHeight);
    state.pWidget->setFixedSize(nSheetWidth, nSheetHeight);
    return true;
}

void CPropertySheet::ShowPage(int nPage) {
    QTabWidget& tabs = *TabsOf(*this);
    // Not in the page, where Enter might press its first button.
    tabs.tabBar()->setFocus(Qt::OtherFocusReason);
    CPropertyPage& page = *m_pages.at(static_cast<std::size_t>(nPage));
    if (page.IsWindow() || !page.CreatePage(this)) {
        return;
    }
    QWidget& widget = *CWndState::Of(page).pWidget;
    widget.setParent(tabs.widget(nPage));
    widget.show();
    // Made after the buttons, the page's controls still come before them when the keyboard goes round.
    QWidget* pBefore = tabs.tabBar();
    for (const CWnd* const pControl : CWndState::Of(page).children) {
        QWidget* const pWidget = CWndState::Of(*pControl).pWidget.get();
        if (pWidget->focusPolicy() != Qt::NoFocus) {
            QWidget::setTabOrder(pBefore, pWidget);
            pBefore = pWidget;
        }
    }
}

CPropertyPage* CPropertySheet::GetActivePage() const {
    const QTabWidget* const pTabs = TabsOf(*this);
    return pTabs != nullptr ? m_pages.at(static_cast<std::size_t>(pTabs->currentIndex())) : nullptr;
}

void CPropertySheet::EnableApply() {
    m_btnApply.EnableWindow(std::any_of(m_pages.begin(), m_pages.end(),
                                        [](const CPropertyPage* pPage) { return pPage->m_bModified; }));
}

// The window can also go without the sheet's own doing: with its owner.
void CPropertySheet::PostNcDestroy() {
    OnCancel();
}

void CPropertySheet::OnOK() {
    if (m_pLoop && GetActivePage()->UpdateData()) {
        m_pLoop->End(IDOK);
    }
}

void CPropertySheet::OnCancel() {
    if (m_pLoop) {
        m_pLoop->End(IDCANCEL);
    }
}
