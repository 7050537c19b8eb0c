#include "platform/windows/DataExchange.h"

#include "platform/windows/Wnd.h"

void DDX_Control(CDataExchange* pDX, int nId, CWnd& control) {
    if (!control.IsWindow() && !control.SubclassDlgItem(nId, pDX->m_pDlgWnd)) {
        pDX->Fail();
    }
}
