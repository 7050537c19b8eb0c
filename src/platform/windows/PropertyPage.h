#pragma once

#include "platform/windows/Dialog.h"

class CPropertySheet;

// One page of a property sheet: a dialog whose title stands on its tab. Its controls are made, and
// OnInitDialog runs, when the user comes to it for the first time.
class CPropertyPage : public CDialog {
public:
    explicit CPropertyPage(const DialogTemplate& dialogTemplate);
    ~CPropertyPage() override;

    // Tells the sheet whether the page holds something that Apply would take; the button is enabled as long
    // as any page does.
    void SetModified(bool bModified = true);

private:
    friend class CPropertySheet;

    CPropertySheet* m_pSheet = nullptr;
    bool m_bModified = false;
};
