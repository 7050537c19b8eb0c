#pragma once

#include "platform/windows/Slider.h"

// A slider that tells its parent of everything over it that may move it, each time with a WM_MOUSEMOVE
// without flags and place. The parent hears of a mouse move or a turn of the wheel before the slider follows,
// of a key after it has.
class CForwardingSlider final : public CSliderCtrl {
public:
    ~CForwardingSlider() override = default;

protected:
    const CMessageMap& GetMessageMap() const override;

private:
    void OnMouse();
    void OnKey();
    void NotifyParent();
};
