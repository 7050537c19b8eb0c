#pragma once

#include "platform/drawing/Picture.h"
#include "platform/windows/Wnd.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class QEvent;
class QPalette;
class QWidget;

// The inside of the layer: what a CWnd keeps of its widget. For the .cpp files of this directory only.

// Lets a widget go without pulling it away under an event that it is still handling: it is hidden at once and
// deleted by the message loop.
struct CWidgetRelease {
    void operator()(QWidget* pWidget) const;
};

// Whether the toolkit runs: without it no window can be made.
bool HasToolkit();

// What the toolkit's side may hold on to for longer than the object lives. Both are null once they are gone.
struct CWndLink {
    CWndState* pState = nullptr;
    QWidget* pWidget = nullptr;

    // The object, if this widget is still the one behind it.
    CWndState* StateFor(const QWidget* pWanted) const { return pWidget == pWanted ? pState : nullptr; }
};

struct CControlParams {
    const CString& strText;
    DWORD dwStyle;
    const RECT& rc;
    CWnd* pParent;
    int nId;
};

struct CWndState {
    // A message whose handler is running.
    struct CRunning {
        UINT nMessage;
        WPARAM wParam;
        LPARAM lParam;
        QEvent* pEvent;  // where it comes from, until the widget has had it
        CRunning* pOuter;
    };
    struct CTimer {
        UINT nId;
        int nToolkitId;
    };

    explicit CWndState(CWnd& window);
    ~CWndState();
    CWndState(const CWndState&) = delete;
    CWndState& operator=(const CWndState&) = delete;
    CWndState(CWndState&&) = delete;
    CWndState& operator=(CWndState&&) = delete;

    static CWndState& Of(const CWnd& window) { return *window.m_pState; }
    // Null for no window.
    static std::shared_ptr<CWndLink> LinkOf(const CWnd* pWindow) {
        return pWindow != nullptr ? Of(*pWindow).pLink : nullptr;
    }
    // The object behind a widget or behind the nearest of its parents that has one.
    static CWnd* Find(const QWidget* pWidget);

    // Takes the widget into use: parent, place, events. False, and the widget is gone, if a control has no
    // parent with a window or WM_CREATE was answered with -1.
    bool Attach(std::unique_ptr<QWidget> pNew, const CControlParams& params);
    // Puts this object in the place of the one that has the widget now.
    void TakeOver(CWndState& other);
    // Lets the widget go, and those of the children, without messages.
    void Detach();
    bool IsTopLevel() const;

    LRESULT Dispatch(UINT nMessage, WPARAM wParam, LPARAM lParam, QEvent* pSource);
    // Hands the event of the running message to the widget, once; false if it comes from none.
    bool DeliverEvent(UINT nMessage);
    void NotifyParent(UINT nCode);
    // The same with WM_NOTIFY, for the codes that go that way.
    void NotifyParentByHeader(UINT nCode);

    void SetClientSize(int cx, int cy);
    void SendDuePaint();
    void ApplyPendingText();

    CWnd& wnd;
    const std::thread::id threadId = std::this_thread::get_id();
    std::shared_ptr<CWndLink> pLink = std::make_shared<CWndLink>();
    std::unique_ptr<QWidget, CWidgetRelease> pWidget;
    CWnd* pParent = nullptr;
    std::vector<CWnd*> children;  // in the order of their creation
    int nId = 0;
    bool bDialog = false;        // made from a template: a window of its own or a page of one
    bool bLabel = false;         // it has a picture of its own as soon as somebody draws on it
    bool bShowsPicture = false;  // a label that has been drawn on
    bool bDestroying = false;
    bool bPaintDue = false;
    CRunning* pRunning = nullptr;
    std::vector<CTimer> timers;

    int nWidth = 0;
    int nHeight = 0;
    CPicture picture;

    mutable std::mutex textLock;  // guards strText, for the length of a copy
    CString strText;
    std::atomic<bool> bTextPending = false;
};

// Turns the events of a widget into messages of its window.
void InstallEventBridge(CWndState& state);

// The widget of a window of its own: it shows the window's picture.
std::unique_ptr<QWidget> MakeFrameWidget(CWndState& state);
// Copies what is marked in the window's picture to its widget now.
void FlushPicture(CWndState& state);

// The part of a widget that is its window's client area: all of it, but for the frame of a label.
RECT ClientAreaOf(const QWidget& widget);

// A widget's text is its title, label or content, whichever it has.
void SetWidgetText(QWidget& widget, const CString& strText);

// Fills the table behind GetSysColor from a palette.
void ReadSystemColors(const QPalette& palette);

// Centres a window on its owner, or on the screen if that has none to show; it stays on the screen.
void CenterWidget(QWidget& widget, const CWnd* pOwner);
// Centres a modal window and keeps it in front of its owner. The owner's widget doesn't own it: it lives on
// the stack of whoever asked.
void PlaceAbove(QWidget& widget, const CWnd* pOwner);
// Gives the keyboard back to the owner of a modal window that has gone, if there still is an owner.
void ActivateOwner(const std::shared_ptr<CWndLink>& pOwner);
