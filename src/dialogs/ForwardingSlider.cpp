#include "dialogs/ForwardingSlider.h"

#include <array>

const CMessageMap& CForwardingSlider::GetMessageMap() const {
    static constexpr std::array entries{MapMessage<&CForwardingSlider::OnMouse>(WM_MOUSEMOVE),
                                        MapMessage<&CForwardingSlider::OnMouse>(WM_MOUSEWHEEL),
                                        MapMessage<&CForwardingSlider::OnKey>(WM_KEYDOWN),
                                        MapMessage<&CForwardingSlider::OnKey>(WM_KEYUP)};
    static const CMessageMap map{entries, &CSliderCtrl::GetMessageMap()};
    return map;
}

void CForwardingSlider::OnMouse() {
    NotifyParent();
    Default();
}

void CForwardingSlider::OnKey() {
    Default();
    NotifyParent();
}

void CForwardingSlider::NotifyParent() {
    // A key may have closed the dialog.
    if (CWnd* const pParent = GetParent()) {
        pParent->SendNotifyMessage(WM_MOUSEMOVE);
    }
}
