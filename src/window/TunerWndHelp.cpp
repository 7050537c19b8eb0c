#include "platform/base/String.h"
#include "platform/shell/CurrentDirectory.h"
#include "platform/shell/Registry.h"
#include "platform/shell/WinExec.h"
#include "window/TunerWnd.h"

namespace {

constexpr const char* VIEWER_KEY = R"(htmlfile\shell\open\command)";
constexpr const char* PRODUCT_PAGE = R"( https:\\www.fretvane.example\products\fvn10.html)";

}  // namespace

// Without a viewer nothing happens, and nothing is said.
void CTunerWnd::OnHelp() {
    const auto strViewer = RegQueryClassValue(VIEWER_KEY);
    const CString strDirectory = GetCurrentDirectory();
    if (strViewer && !strDirectory.empty()) {
        WinExec(FormatText("%s %s/fvnhelp.htm", strViewer->c_str(), strDirectory.c_str()));
    }
}

void CTunerWnd::OpenWebPage() {
    if (const auto strViewer = RegQueryClassValue(VIEWER_KEY)) {
        WinExec(FormatText("%s%s", strViewer->c_str(), PRODUCT_PAGE));
    }
}
