#include "window/MouseForwarding.h"

#include "platform/windows/SystemMetrics.h"
#include "platform/windows/Wnd.h"

void ForwardMouseMove(const CWnd& control, POINT ptScreen) {
    CWnd* pParent = control.GetParent();
    if (pParent == nullptr) {
        return;
    }
    const RECT rcWindow = pParent->GetWindowRect();
    const POINT ptClient{
        ptScreen.x - rcWindow.left - GetSystemMetrics(SM_CXFIXEDFRAME),
        ptScreen.y - rcWindow.top - GetSystemMetrics(SM_CYMENU) - GetSystemMetrics(SM_CYFIXEDFRAME)};
    pParent->SendNotifyMessage(WM_MOUSEMOVE, 0, MakePointParam(ptClient));
}
