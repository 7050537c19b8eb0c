#include "platform/threads/Sleep.h"
#include "platform/windows/WinApp.h"
#include "window/TunerWnd.h"

#include <cstdlib>

// Every way of closing comes through here first: no frame touches the window any more, and when this returns
// none runs.
void CTunerWnd::BeginClosing() {
    m_bClosing = true;
    m_engine.Stop();
    Sleep(0);
}

void CTunerWnd::OnClose() {
    BeginClosing();
    Default();
}

void CTunerWnd::OnExit() {
    BeginClosing();
    DestroyWindow();
}

void CTunerWnd::OnDestroy() {
    m_store.SetHop(static_cast<float>(m_engine.GetHop()));
    // Once more, for the window that is destroyed without having been closed.
    m_bClosing = true;
    m_engine.Stop();
    // Without a selected row, as after a creation that failed, the row that was loaded stays.
    if (const int nSelected = m_lbTunings.GetCurSel(); nSelected >= 0) {
        m_store.SetListIndex(nSelected);
    }
    Succeed(m_store.Save("state.txt"), "Unable to save state.txt");
    Default();
}

void CTunerWnd::PostNcDestroy() {
    if (m_engine.GetCapture().IsClientHeld()) {
        // A frame that could not be waited for still stands on this object. All is saved: the process ends as
        // it is.
        std::_Exit(EXIT_SUCCESS);
    }
    if (CWinApp* pApp = GetApp()) {
        pApp->DeleteMainWnd(*this);
    }
}
