#pragma once

#include "platform/windows/Messages.h"

#include <memory>

class CWnd;
class QEventLoop;
class QWidget;
struct CWndLink;

// What modal windows of our own have in common. For the .cpp files of this directory only.

// The toolkit's dialog, which knows Enter and the default button; its Escape is IDCANCEL to the window.
std::unique_ptr<QWidget> MakeDialogWidget(const std::shared_ptr<CWndLink>& pLink);

// What a modal window belongs to: this parent, or without one the application's main window, or where there
// is none either, the window in front.
CWnd* OwnerOf(CWnd* pParent);

// One modal run of a window.
class CModalLoop {
public:
    CModalLoop();
    ~CModalLoop();
    CModalLoop(const CModalLoop&) = delete;
    CModalLoop& operator=(const CModalLoop&) = delete;
    CModalLoop(CModalLoop&&) = delete;
    CModalLoop& operator=(CModalLoop&&) = delete;

    // Shows the window in front of its owner, which may be null, until End; not at all after End.
    void Run(const CWnd& wnd, const CWnd* pOwner);
    // The first result counts.
    void End(int nResult);
    int GetResult() const { return m_nResult; }

private:
    const std::unique_ptr<QEventLoop> m_pLoop;
    bool m_bEnded = false;
    int m_nResult = IDCANCEL;
};
