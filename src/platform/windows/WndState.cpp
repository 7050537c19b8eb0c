#include "platform/windows/WndState.h"

#include "platform/drawing/SysColors.h"
#include "platform/windows/Messages.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <bit>
#include <unordered_map>
#include <utility>

namespace {

std::unordered_map<const QWidget*, CWnd*>& Windows() {
    static std::unordered_map<const QWidget*, CWnd*> windows;
    return windows;
}

bool IsDialogWindow(const QWidget& widget) {
    return widget.windowType() == Qt::Dialog;
}

}  // namespace

void CWidgetRelease::operator()(QWidget* pWidget) const {
    if (QCoreApplication::instance() == nullptr) {
        delete pWidget;
        return;
    }
    pWidget->hide();
    pWidget->deleteLater();
}

bool HasToolkit() {
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

CWndState::CWndState(CWnd& window) : wnd(window) {
    pLink->pState = this;
}

CWndState::~CWndState() {
    pLink->pState = nullptr;
}

CWnd* CWndState::Find(const QWidget* pWidget) {
    for (; pWidget != nullptr; pWidget = pWidget->parentWidget()) {
        const auto found = Windows().find(pWidget);
        if (found != Windows().end()) {
            return found->second;
        }
    }
    return nullptr;
}

bool CWndState::IsTopLevel() const {
    return pWidget && pWidget->isWindow();
}

bool CWndState::Attach(std::unique_ptr<QWidget> pNew, const CControlParams& params) {
    const bool bTopLevel = pNew->isWindow() && (params.dwStyle & WS_CHILD) == 0;
    const bool bParent = params.pParent != nullptr && params.pParent->IsWindow();
    if (pWidget || (!bTopLevel && !bParent)) {
        return false;
    }
    if (bParent) {
        CWndState& parent = Of(*params.pParent);
        if (!bTopLevel) {
            pNew->setParent(parent.pWidget.get());
            // The first one made lies on top, and one made later, such as a group box, behind it.
            pNew->lower();
            if (!IsDialogWindow(*parent.pWidget->window()) && pNew->focusPolicy() != Qt::NoFocus) {
                pNew->setFocusPolicy(Qt::ClickFocus);
            }
        }
        parent.children.push_back(&wnd);
        pParent = params.pParent;
    }
    pWidget.reset(pNew.release());
    pLink->pWidget = pWidget.get();
    Windows().emplace(pWidget.get(), &wnd);
    nId = params.nId;
    pWidget->setProperty("controlId", nId);
    SetWidgetText(*pWidget, params.strText);
    {
        const std::lock_guard lock(textLock);
        strText = params.strText;
    }
    if (!bTopLevel) {
        pWidget->setGeometry(params.rc.left, params.rc.top, params.rc.Width(), params.rc.Height());
    }
    InstallEventBridge(*this);

    const std::shared_ptr<CWndLink> pKeep = pLink;
    if (Dispatch(WM_CREATE, 0, 0, nullptr) == -1) {
        if (pKeep->pState != nullptr) {
            wnd.DestroyWindow();
        }
        return false;
    }
    if (pKeep->pState == nullptr || pKeep->pWidget == nullptr) {
        return false;
    }
    if ((params.dwStyle & WS_VISIBLE) != 0) {
        pWidget->show();
    }
    return true;
}

void CWndState::TakeOver(CWndState& other) {
    // Whoever holds on to the widget's link reaches this object from now on.
    std::swap(pLink, other.pLink);
    pLink->pState = this;
    other.pLink->pState = &other;
    pWidget = std::move(other.pWidget);
    Windows()[pWidget.get()] = &wnd;
    pParent = std::exchange(other.pParent, nullptr);
    if (pParent != nullptr) {
        std::vector<CWnd*>& siblings = Of(*pParent).children;
        std::replace(siblings.begin(), siblings.end(), &other.wnd, &wnd);
    }
    children = std::exchange(other.children, {});
    for (const CWnd* const pChild : children) {
        Of(*pChild).pParent = &wnd;
    }
    nId = other.nId;
    bLabel = other.bLabel;
    bShowsPicture = false;
    timers = std::exchange(other.timers, {});
    const std::scoped_lock lock(textLock, other.textLock);
    strText = other.strText;
    bTextPending = other.bTextPending.exchange(false);
}

void CWndState::Detach() {
    for (CWnd* const pChild : std::exchange(children, {})) {
        CWndState& child = Of(*pChild);
        child.pParent = nullptr;
        child.Detach();
    }
    if (pParent != nullptr) {
        std::erase(Of(*pParent).children, &wnd);
        pParent = nullptr;
    }
    timers.clear();
    if (pWidget) {
        Windows().erase(pWidget.get());
        pLink->pWidget = nullptr;
        pWidget.reset();
    }
}

LRESULT CWndState::Dispatch(UINT nMessage, WPARAM wParam, LPARAM lParam, QEvent* pSource) {
    const std::shared_ptr<CWndLink> pKeep = pLink;
    CRunning running{nMessage, wParam, lParam, pSource, pRunning};
    pRunning = &running;
    const LRESULT lResult = wnd.WindowProc(nMessage, wParam, lParam);
    if (pKeep->pState != nullptr) {
        pRunning = running.pOuter;
    }
    return lResult;
}

bool CWndState::DeliverEvent(UINT nMessage) {
    if (pRunning == nullptr || pRunning->nMessage != nMessage || pRunning->pEvent == nullptr || !pWidget) {
        return false;
    }
    QObject* const pReceiver = pWidget.get();
    pReceiver->event(std::exchange(pRunning->pEvent, nullptr));
    return true;
}

void CWndState::NotifyParent(UINT nCode) {
    if (pParent != nullptr) {
        pParent->SendMessage(WM_COMMAND, MakeCommandParam(nId, nCode), 0);
    }
}

void CWndState::NotifyParentByHeader(UINT nCode) {
    if (pParent != nullptr) {
        const NMHDR header{&wnd, nId, nCode};
        pParent->SendMessage(WM_NOTIFY, static_cast<WPARAM>(nId), std::bit_cast<LPARAM>(&header));
    }
}

void CWndState::SetClientSize(int cx, int cy) {
    if (cx == nWidth && cy == nHeight) {
        return;
    }
    nWidth = cx;
    nHeight = cy;
    bPaintDue = true;
    const std::lock_guard lock(picture.GetLock());
    picture.Create(cx, cy, GetSysColor(COLOR_BTNFACE));
}

void CWndState::SendDuePaint() {
    if (std::exchange(bPaintDue, false)) {
        Dispatch(WM_PAINT, 0, 0, nullptr);
    }
}

void CWndState::ApplyPendingText() {
    if (!pWidget || !bTextPending.exchange(false)) {
        return;
    }
    CString strNew;
    {
        const std::lock_guard lock(textLock);
        strNew = strText;
    }
    SetWidgetText(*pWidget, strNew);
}
