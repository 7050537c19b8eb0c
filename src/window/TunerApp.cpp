#include "window/TunerApp.h"

#include "window/TunerWnd.h"

#include <memory>

bool CTunerApp::InitInstance() {
    // A window that could not be created is found out by the application, which then ends.
    SetMainWnd(std::make_unique<CTunerWnd>());
    if (CWnd* pMainWnd = GetMainWnd()) {
        pMainWnd->CenterWindow();
        pMainWnd->ShowWindow(GetShowCommand());
        pMainWnd->UpdateWindow();
    }
    return true;
}
