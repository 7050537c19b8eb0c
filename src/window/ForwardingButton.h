#pragma once

#include "platform/windows/Button.h"

// A button of the main window that lets its parent know of the mouse moves over it and of the keys that come
// up while it has the keyboard: no dialog manager hands them on.
class CForwardingButton final : public CButton {
protected:
    const CMessageMap& GetMessageMap() const override;

private:
    LRESULT OnNcHitTest(POINT ptScreen);
    void OnKeyUp(UINT nKey);
};
