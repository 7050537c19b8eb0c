#include "platform/windows/WinApp.h"

#include "platform/windows/EndSignals.h"
#include "platform/windows/ModalBox.h"
#include "platform/windows/WindowsSession.h"
#include "platform/windows/WndState.h"

#include <QtWidgets/QApplication>
#include <cstdlib>
#include <utility>

namespace {

CWinApp*& TheApp() {
    static CWinApp* pApp = nullptr;
    return pApp;
}

}  // namespace

CWinApp* GetApp() {
    return TheApp();
}

CWinApp::CWinApp() {
    TheApp() = this;
}

CWinApp::~CWinApp() {
    if (TheApp() == this) {
        TheApp() = nullptr;
    }
}

int CWinApp::Main() {
    const CWindowsSession session;
    const CEndSignals signals([this] { OnEndSignal(); });
    const bool bStarted = InitInstance() && m_pMainWnd && m_pMainWnd->IsWindow();
    if (bStarted) {
        if (m_bEndRequested) {
            m_pMainWnd->SendMessage(WM_CLOSE);
        }
        if (m_pMainWnd->IsWindow()) {
            QApplication::exec();
        }
    }
    if (m_bDeleteMainWnd || !bStarted) {
        m_pMainWnd.reset();
    }
    return bStarted || m_bEndRequested ? EXIT_SUCCESS : EXIT_FAILURE;
}

bool CWinApp::InitInstance() {
    return true;
}

void CWinApp::SetMainWnd(std::unique_ptr<CWnd> pMainWnd) {
    m_pMainWnd = std::move(pMainWnd);
}

CWnd* CWinApp::GetMainWnd() const {
    return m_pMainWnd.get();
}

void CWinApp::DeleteMainWnd(const CWnd& wnd) {
    if (m_pMainWnd.get() == &wnd) {
        // Its own handlers may be below us on the stack: Main() does it when the last one has returned.
        m_bDeleteMainWnd = true;
    }
}

int CWinApp::GetShowCommand() const {
    return SW_SHOWNORMAL;
}

void CWinApp::OnEndSignal() {
    m_bEndRequested = true;
    if (m_pMainWnd && m_pMainWnd->IsWindow()) {
        m_pMainWnd->SendMessage(WM_CLOSE);
    } else {
        // Still starting: what is waiting for an answer gets none.
        CModalBox::EndAll();
    }
}
