#pragma once

#include "platform/base/Types.h"
#include "platform/windows/MessageMap.h"

#include <memory>
#include <mutex>

class CDataExchange;
class CFont;
class CPicture;
struct CWndState;

// A window or control: an object with a toolkit widget behind it while the window exists. Events become
// messages that run through the message map; what no handler takes, or what a handler passes on with
// Default(), goes to the widget.
//
// Everything is for the message-loop thread, but for what says otherwise. Without a window every operation is
// harmless: it does nothing, and questions are answered with nothing (false, 0, empty).
//
// Life: CreateEx or a control's Create, WM_CREATE, ... DestroyWindow, WM_DESTROY (first to this window, then
// to its children), PostNcDestroy. A parent takes the windows of its children with it, and an object that
// dies takes its window with it, without messages, for by then the handlers of its class are gone. Parent and
// child objects may die in any order.
class CWnd {
public:
    CWnd();
    virtual ~CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    CWnd(CWnd&&) = delete;
    CWnd& operator=(CWnd&&) = delete;

    // A window of its own if pParent is null, else one owned by it; not shown yet unless WS_VISIBLE is set.
    // It is of fixed size; rc is the window's rectangle with the frame. False if OnCreate returned -1: then
    // WM_DESTROY and PostNcDestroy have run and no window is left.
    bool CreateEx(DWORD dwStyle, const CString& strTitle, const RECT& rc, CWnd* pParent, int nId);
    bool DestroyWindow();
    bool IsWindow() const;

    // Carried out at once, on the message-loop thread.
    LRESULT SendMessage(UINT nMessage, WPARAM wParam = 0, LPARAM lParam = 0);
    // The same; the result isn't wanted.
    void SendNotifyMessage(UINT nMessage, WPARAM wParam = 0, LPARAM lParam = 0);

    // The icon of a window of its own, from a picture file; false if it can't be read.
    bool SetIcon(const CString& strFile);

    // One timer for each id; WM_TIMER with the id as wParam every nMilliseconds until KillTimer or the end of
    // the window. Setting a running timer starts it anew.
    bool SetTimer(UINT nId, UINT nMilliseconds);
    bool KillTimer(UINT nId);

    void ShowWindow(int nCmdShow);
    // Sends WM_PAINT at once if a paint is due, and brings the picture to the screen.
    void UpdateWindow();
    // Makes a paint due: WM_PAINT comes with the next refresh. The rectangle of the picture (null: all of it)
    // is brought to the screen then, in the face colour if bErase is set and nobody paints over it.
    void InvalidateRect(const RECT* prc, bool bErase);
    bool IsWindowVisible() const;
    bool IsIconic() const;

    // The window's rectangle for a client rectangle, both with the same origin: the client area grown by the
    // frame, which has the widths of GetSystemMetrics whatever the desktop draws around the window.
    static void CalcWindowRect(RECT& rc);
    void SetWindowPos(int x, int y, int cx, int cy, UINT nFlags);
    void CenterWindow();
    // (0, 0, width, height).
    RECT GetClientRect() const;
    // In screen coordinates, with the frame.
    RECT GetWindowRect() const;
    void ClientToScreen(POINT& pt) const;
    void ScreenToClient(POINT& pt) const;

    // Any thread. Off the message-loop thread the text is only noted, without waiting, and the next refresh
    // shows it.
    void SetWindowText(const CString& strText);
    CString GetWindowText() const;
    // Sends WM_SETFONT. The font need not outlive the call.
    void SetFont(const CFont& font, bool bRedraw = true);

    // What a screen reader says of a window besides its text: the name in place of a caption that does not
    // read well or is missing, and what it shows. A description that changes is announced.
    void SetAccessibleName(const CString& strName);
    void SetAccessibleDescription(const CString& strDescription);

    void EnableWindow(bool bEnable);
    bool IsWindowEnabled() const;
    void SetFocus();
    // The window that has the keyboard, null if none of ours has it.
    static CWnd* GetFocus();

    int GetDlgCtrlID() const;
    // Null once the window is gone: a handler that lets the default handling run first must look.
    CWnd* GetParent() const;
    // The child with this id, null if there is none.
    CWnd* GetDlgItem(int nId) const;
    // This object takes the place of the one that is behind a child of pParent: it has the widget and gets
    // the messages from then on, with the class's own default handling of them; WM_CREATE isn't sent again.
    // False if there is no such child or this object has a window already.
    bool SubclassDlgItem(int nId, CWnd* pParent);
    // Runs DoDataExchange. False if it failed.
    bool UpdateData();

    // The picture of the client area: filled with the face colour at first, of the client area's size, copied
    // to the screen by the message loop where it is marked, at most once per display refresh. Any thread, for
    // the whole life of the object, if the lock is held while drawing: for one widget's draw at a time, never
    // across a wait, a nested loop or another lock of this kind.
    CPicture& GetPicture() const;
    std::mutex& GetPictureLock() const;

protected:
    virtual const CMessageMap& GetMessageMap() const;
    // Runs the message through the map, and what it doesn't hold through DefWindowProc.
    virtual LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam);
    // The handling of a message by the widget behind the window, or by the window itself for messages that
    // come from no event: WM_CLOSE destroys the window, WM_RBUTTONUP sends WM_CONTEXTMENU.
    virtual LRESULT DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam);
    // In a handler: DefWindowProc for the message being handled, once at most.
    LRESULT Default();
    // Binds the members that are controls (DDX_Control) and exchanges their values. Nothing by itself.
    virtual void DoDataExchange(CDataExchange* pDX);
    // The last call for a window: it is gone. Nothing of the object is used after it.
    virtual void PostNcDestroy();

    // Gives the object a client area, and so a picture to draw into, without a window.
    void SetClientSize(int cx, int cy);

private:
    friend struct CWndState;
    const std::unique_ptr<CWndState> m_pState;
};
