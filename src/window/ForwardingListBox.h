#pragma once

#include "platform/windows/ListBox.h"

// A list of the main window that lets its parent know of the mouse moves over it, and leaves it all
// characters: none of them moves the selection.
class CForwardingListBox final : public CListBox {
protected:
    const CMessageMap& GetMessageMap() const override;

private:
    LRESULT OnNcHitTest(POINT ptScreen);
    void OnChar(UINT nChar);
};
