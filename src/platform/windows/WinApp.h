#pragma once

#include "platform/windows/Wnd.h"

#include <memory>

// The application: one object, which lives for the whole program. main() calls Main().
class CWinApp {
public:
    CWinApp();
    virtual ~CWinApp();
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    CWinApp(CWinApp&&) = delete;
    CWinApp& operator=(CWinApp&&) = delete;

    // Opens the display, runs InitInstance and then the message loop, until the main window is destroyed. The
    // process's exit code: 0, or 1 if InitInstance returned false or left no main window. A display that
    // can't be opened ends the process with a message on stderr and code 1. SIGTERM, SIGINT and SIGHUP send
    // WM_CLOSE to the main window.
    int Main();

    // Makes the main window with SetMainWnd and shows it.
    virtual bool InitInstance();

    // The application owns its main window. One whose window was not created, or is gone already, ends the
    // start.
    void SetMainWnd(std::unique_ptr<CWnd> pMainWnd);
    CWnd* GetMainWnd() const;
    // For PostNcDestroy of the main window: deletes the object, as soon as none of its handlers is running
    // any more. Does nothing for any other window, such as one that is still being constructed.
    void DeleteMainWnd(const CWnd& wnd);
    // How the main window is to be shown at first, for ShowWindow.
    int GetShowCommand() const;

private:
    void OnEndSignal();

    std::unique_ptr<CWnd> m_pMainWnd;
    bool m_bDeleteMainWnd = false;
    bool m_bEndRequested = false;
};

// The one application object, null if there is none.
CWinApp* GetApp();
