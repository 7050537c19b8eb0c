#include "platform/windows/Keys.h"
#include "platform/windows/WndState.h"

#include <QtCore/QTimerEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QDialog>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <cmath>

namespace {

POINT FloorPoint(const QPointF& pt) {
    return {static_cast<int>(std::floor(pt.x())), static_cast<int>(std::floor(pt.y()))};
}

// The mouse buttons and modifiers, as wParam of a mouse message carries them.
WPARAM MouseFlags(const QMouseEvent& event) {
    constexpr WPARAM nLeft = 0x01;
    constexpr WPARAM nRight = 0x02;
    constexpr WPARAM nShift = 0x04;
    constexpr WPARAM nControl = 0x08;
    return (event.buttons().testFlag(Qt::LeftButton) ? nLeft : 0) |
           (event.buttons().testFlag(Qt::RightButton) ? nRight : 0) |
           (event.modifiers().testFlag(Qt::ShiftModifier) ? nShift : 0) |
           (event.modifiers().testFlag(Qt::ControlModifier) ? nControl : 0);
}

// 0 for a button that has no message. A second click is a press like the first.
UINT MouseMessage(const QMouseEvent& event) {
    if (event.type() == QEvent::MouseMove) {
        return WM_MOUSEMOVE;
    }
    const bool bUp = event.type() == QEvent::MouseButtonRelease;
    switch (event.button()) {
        case Qt::LeftButton:
            return bUp ? WM_LBUTTONUP : WM_LBUTTONDOWN;
        case Qt::RightButton:
            return bUp ? WM_RBUTTONUP : WM_RBUTTONDOWN;
        default:
            return 0;
    }
}

// Watches a widget (and the parts that it consists of) and sends its window the messages. It belongs to the
// widget and does nothing any more once the window has let go of it.
class CEventBridge final : public QObject {
public:
    CEventBridge(QWidget& widget, std::shared_ptr<CWndLink> pLink)
        : QObject(&widget), m_widget(widget), m_pLink(std::move(pLink)) {}

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
        CWndState* const pState = m_pLink->StateFor(&m_widget);
        if (pState == nullptr) {
            return false;
        }
        if (pEvent->type() == QEvent::ShortcutOverride) {
            // The first to come of a key, also of one that turns out to be a mnemonic.
            FollowAltKey(static_cast<const QKeyEvent&>(*pEvent));
            return false;
        }
        if (pWatched != &m_widget || !(pState->IsTopLevel() || pState->bDialog)) {
            return OnControlEvent(*pState, pWatched, *pEvent);
        }
        return OnWindowEvent(*pState, *pEvent);
    }

private:
    bool OnControlEvent(CWndState& state, const QObject* pWatched, QEvent& event) {
        switch (event.type()) {
            case QEvent::Enter:
            case QEvent::MouseMove:
            case QEvent::MouseButtonPress:
                state.Dispatch(
                    WM_NCHITTEST, 0,
                    MakePointParam(FloorPoint(static_cast<QSinglePointEvent&>(event).globalPosition())),
                    nullptr);
                return event.type() != QEvent::Enter && pWatched == &m_widget &&
                       OnControlMouse(static_cast<QMouseEvent&>(event));
            case QEvent::MouseButtonDblClick:
            case QEvent::MouseButtonRelease:
                return pWatched == &m_widget && OnControlMouse(static_cast<QMouseEvent&>(event));
            case QEvent::Wheel:
                return pWatched == &m_widget && OnWheel(state, static_cast<QWheelEvent&>(event));
            case QEvent::KeyPress:
            case QEvent::KeyRelease:
                return pWatched == &m_widget && OnKey(state, static_cast<QKeyEvent&>(event));
            case QEvent::Timer:
                return pWatched == &m_widget && OnTimer(state, static_cast<QTimerEvent&>(event));
            default:
                return false;
        }
    }

    // Moves and the left button; the widget gets them as the default handling.
    bool OnControlMouse(QMouseEvent& event) {
        CWndState* const pState = m_pLink->StateFor(&m_widget);
        const UINT nMessage = MouseMessage(event);
        if (pState == nullptr ||
            (nMessage != WM_MOUSEMOVE && nMessage != WM_LBUTTONDOWN && nMessage != WM_LBUTTONUP)) {
            return false;
        }
        pState->Dispatch(nMessage, MouseFlags(event), MakePointParam(FloorPoint(event.position())), &event);
        return true;
    }

    static bool OnWheel(CWndState& state, QWheelEvent& event) {
        constexpr unsigned nHighWord = 16;
        const auto nTurn = static_cast<WPARAM>(event.angleDelta().y() & 0xFFFF) << nHighWord;
        state.Dispatch(WM_MOUSEWHEEL, nTurn, MakePointParam(FloorPoint(event.globalPosition())), &event);
        return true;
    }

    bool OnWindowEvent(CWndState& state, QEvent& event) {
        switch (event.type()) {
            case QEvent::Paint:
                // The controls of a dialog show themselves; its own handler comes on top of that.
                if (state.bDialog) {
                    state.SendDuePaint();
                }
                return false;
            case QEvent::MouseMove:
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonDblClick:
            case QEvent::MouseButtonRelease:
                return OnMouse(state, static_cast<QMouseEvent&>(event));
            case QEvent::KeyPress:
            case QEvent::KeyRelease:
                return OnKey(state, static_cast<QKeyEvent&>(event));
            case QEvent::Timer:
                return OnTimer(state, static_cast<QTimerEvent&>(event));
            case QEvent::Move:
            case QEvent::WindowStateChange: {
                POINT ptOrigin;
                state.wnd.ClientToScreen(ptOrigin);
                state.Dispatch(WM_MOVE, 0, MakePointParam(ptOrigin), nullptr);
                return false;
            }
            case QEvent::Close:
                // The window itself decides whether it goes, and when.
                event.ignore();
                state.Dispatch(WM_CLOSE, 0, 0, nullptr);
                return true;
            default:
                return false;
        }
    }

    static bool OnMouse(CWndState& state, QMouseEvent& event) {
        const UINT nMessage = MouseMessage(event);
        if (nMessage == 0) {
            return false;
        }
        event.accept();
        state.Dispatch(nMessage, MouseFlags(event), MakePointParam(FloorPoint(event.position())), nullptr);
        return true;
    }

    // One key of the toolkit is WM_KEYDOWN and the WM_CHAR for each of its characters. The widget gets it as
    // the default handling of the first character, or of WM_KEYDOWN if there is none.
    bool OnKey(CWndState& state, QKeyEvent& event) {
        if (event.type() == QEvent::KeyRelease && event.isAutoRepeat()) {
            return false;
        }
        if (FollowAltKey(event) && event.type() == QEvent::KeyRelease) {
            return false;
        }
        // Keys go to one window and not on to its parent, but for a dialog, which looks for Enter and Escape.
        const bool bKeep = state.IsTopLevel() || qobject_cast<QDialog*>(m_widget.window()) == nullptr;
        const UINT nVirtualKey = VirtualKeyOf(event);
        if (event.type() == QEvent::KeyRelease) {
            state.Dispatch(WM_KEYUP, nVirtualKey, 0, &event);
        } else {
            SendKeyDown(state, nVirtualKey, event);
        }
        if (bKeep) {
            event.accept();
        }
        return true;
    }

    void SendKeyDown(CWndState& state, UINT nVirtualKey, QKeyEvent& event) {
        const std::u32string characters = CharactersOf(event);
        QEvent* pSource = &event;
        state.Dispatch(WM_KEYDOWN, nVirtualKey, 0, characters.empty() ? pSource : nullptr);
        for (const char32_t character : characters) {
            CWndState* const pState = m_pLink->StateFor(&m_widget);
            if (pState == nullptr) {
                return;
            }
            pState->Dispatch(WM_CHAR, character, 0, pSource);
            pSource = nullptr;
        }
    }

    static bool OnTimer(CWndState& state, const QTimerEvent& event) {
        const auto found = std::find_if(
            state.timers.begin(), state.timers.end(),
            [&event](const CWndState::CTimer& timer) { return timer.nToolkitId == event.timerId(); });
        if (found == state.timers.end()) {
            return false;
        }
        state.Dispatch(WM_TIMER, found->nId, 0, nullptr);
        return true;
    }

    QWidget& m_widget;
    const std::shared_ptr<CWndLink> m_pLink;
};

}  // namespace

void InstallEventBridge(CWndState& state) {
    QWidget& widget = *state.pWidget;
    auto pBridge = std::make_unique<CEventBridge>(widget, state.pLink);
    widget.setMouseTracking(true);
    // What a control doesn't want of the mouse is not for its parent.
    widget.setAttribute(Qt::WA_NoMousePropagation);
    widget.installEventFilter(pBridge.get());
    // A list consists of a viewport and scroll bars, and the mouse is over one of them.
    if (auto* const pArea = qobject_cast<QAbstractScrollArea*>(&widget)) {
        for (QWidget* const pPart : {pArea->viewport(), static_cast<QWidget*>(pArea->verticalScrollBar())}) {
            pPart->setMouseTracking(true);
            pPart->installEventFilter(pBridge.get());
        }
    }
    // The widget owns it from here on.
    static_cast<void>(pBridge.release());
}
