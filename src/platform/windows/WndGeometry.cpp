#include "platform/windows/SystemMetrics.h"
#include "platform/windows/WndState.h"

#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QLabel>
#include <QtWidgets/QWidget>
#include <algorithm>

namespace {

constexpr int FRAME = 3;
constexpr int CAPTION = 19;

}  // namespace

int GetSystemMetrics(int nIndex) {
    switch (nIndex) {
        case SM_CXFIXEDFRAME:
        case SM_CYFIXEDFRAME:
            return FRAME;
        case SM_CYCAPTION:
        case SM_CYMENU:
            return CAPTION;
        default:
            return 0;
    }
}

void CWnd::CalcWindowRect(RECT& rc) {
    rc = {rc.left - FRAME, rc.top - CAPTION - FRAME, rc.right + FRAME, rc.bottom + FRAME};
}

void CWnd::SetClientSize(int cx, int cy) {
    m_pState->SetClientSize(cx, cy);
}

void CWnd::SetWindowPos(int x, int y, int cx, int cy, UINT nFlags) {
    if (!IsWindow()) {
        return;
    }
    QWidget& widget = *m_pState->pWidget;
    if ((nFlags & SWP_NOMOVE) == 0) {
        widget.move(x, y);
    }
    if ((nFlags & SWP_NOSIZE) != 0) {
        return;
    }
    if (!m_pState->IsTopLevel()) {
        widget.resize(cx, cy);
        return;
    }
    RECT rcFrame;
    CalcWindowRect(rcFrame);
    const int nWidth = std::max(cx - rcFrame.Width(), 0);
    const int nHeight = std::max(cy - rcFrame.Height(), 0);
    m_pState->SetClientSize(nWidth, nHeight);
    widget.setFixedSize(nWidth, nHeight);
}

void CWnd::CenterWindow() {
    if (m_pState->IsTopLevel()) {
        CenterWidget(*m_pState->pWidget, m_pState->pParent);
    }
}

RECT ClientAreaOf(const QWidget& widget) {
    const auto* const pLabel = qobject_cast<const QLabel*>(&widget);
    const QRect area = pLabel != nullptr ? pLabel->contentsRect() : widget.rect();
    return {area.left(), area.top(), area.left() + area.width(), area.top() + area.height()};
}

RECT CWnd::GetClientRect() const {
    if (IsWindow() && !m_pState->IsTopLevel()) {
        const RECT rc = ClientAreaOf(*m_pState->pWidget);
        return {0, 0, rc.Width(), rc.Height()};
    }
    return {0, 0, m_pState->nWidth, m_pState->nHeight};
}

RECT CWnd::GetWindowRect() const {
    if (!IsWindow()) {
        return {};
    }
    const QWidget& widget = *m_pState->pWidget;
    const QPoint origin = widget.mapToGlobal(QPoint(0, 0));
    RECT rc{0, 0, widget.width(), widget.height()};
    if (m_pState->IsTopLevel()) {
        rc = GetClientRect();
        CalcWindowRect(rc);
    }
    return {origin.x() + rc.left, origin.y() + rc.top, origin.x() + rc.right, origin.y() + rc.bottom};
}

void CWnd::ClientToScreen(POINT& pt) const {
    if (IsWindow()) {
        const QWidget& widget = *m_pState->pWidget;
        const RECT rc = ClientAreaOf(widget);
        const QPoint ptScreen = widget.mapToGlobal(QPoint(pt.x + rc.left, pt.y + rc.top));
        pt = {ptScreen.x(), ptScreen.y()};
    }
}

void CWnd::ScreenToClient(POINT& pt) const {
    if (IsWindow()) {
        const QWidget& widget = *m_pState->pWidget;
        const RECT rc = ClientAreaOf(widget);
        const QPoint ptClient = widget.mapFromGlobal(QPoint(pt.x, pt.y));
        pt = {ptClient.x() - rc.left, ptClient.y() - rc.top};
    }
}

void CenterWidget(QWidget& widget, const CWnd* pOwner) {
    const QScreen* const pScreen = widget.screen();
    if (pScreen == nullptr) {
        return;
    }
    const QRect available = pScreen->availableGeometry();
    QRect area = available;
    if (pOwner != nullptr && pOwner->IsWindowVisible() && !pOwner->IsIconic()) {
        const RECT rc = pOwner->GetWindowRect();
        area = QRect(rc.left, rc.top, rc.Width(), rc.Height());
    }
    QRect frame(0, 0, widget.width() + 2 * FRAME, widget.height() + 2 * FRAME + CAPTION);
    frame.moveCenter(area.center());
    frame.moveRight(std::min(frame.right(), available.right()));
    frame.moveBottom(std::min(frame.bottom(), available.bottom()));
    frame.moveLeft(std::max(frame.left(), available.left()));
    frame.moveTop(std::max(frame.top(), available.top()));
    widget.move(frame.topLeft());
}

void PlaceAbove(QWidget& widget, const CWnd* pOwner) {
    if (pOwner != nullptr && pOwner->IsWindowVisible()) {
        widget.winId();
        widget.windowHandle()->setTransientParent(CWndState::Of(*pOwner).pWidget->window()->windowHandle());
    }
    CenterWidget(widget, pOwner);
}

void ActivateOwner(const std::shared_ptr<CWndLink>& pOwner) {
    if (pOwner != nullptr && pOwner->pWidget != nullptr && pOwner->pWidget->isVisible()) {
        pOwner->pWidget->window()->activateWindow();
    }
}
