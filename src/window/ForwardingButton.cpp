#include "window/ForwardingButton.h"

#include "window/MouseForwarding.h"

#include <array>

const CMessageMap& CForwardingButton::GetMessageMap() const {
    static constexpr std::array entries{MapMessage<&CForwardingButton::OnNcHitTest>(WM_NCHITTEST),
                                        MapMessage<&CForwardingButton::OnKeyUp>(WM_KEYUP)};
    static const CMessageMap map{entries, &CButton::GetMessageMap()};
    return map;
}

LRESULT CForwardingButton::OnNcHitTest(POINT ptScreen) {
    ForwardMouseMove(*this, ptScreen);
    return Default();
}

void CForwardingButton::OnKeyUp(UINT nKey) {
    Default();
    // The key may have been a click that closed the window.
    if (CWnd* pParent = GetParent()) {
        pParent->SendMessage(WM_CHAR, nKey);
    }
}
