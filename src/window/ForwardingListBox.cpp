#include "window/ForwardingListBox.h"

#include "window/MouseForwarding.h"

#include <array>

const CMessageMap& CForwardingListBox::GetMessageMap() const {
    static constexpr std::array entries{MapMessage<&CForwardingListBox::OnNcHitTest>(WM_NCHITTEST),
                                        MapMessage<&CForwardingListBox::OnChar>(WM_CHAR)};
    static const CMessageMap map{entries, &CListBox::GetMessageMap()};
    return map;
}

LRESULT CForwardingListBox::OnNcHitTest(POINT ptScreen) {
    ForwardMouseMove(*this, ptScreen);
    return Default();
}

void CForwardingListBox::OnChar(UINT nChar) {
    if (CWnd* pParent = GetParent()) {
        pParent->SendMessage(WM_CHAR, nChar);
    }
}
