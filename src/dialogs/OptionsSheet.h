#pragma once

#include "dialogs/ColorPage.h"
#include "dialogs/DevicePage.h"
#include "platform/windows/PropertySheet.h"

class CTuningStore;

// The options: the page of colours and the page of devices. Apply puts the colours into the store and tells
// the main window, which shows them at once; a later Cancel leaves them there. All else counts on IDOK only,
// when the caller reads the pages.
class COptionsSheet : public CPropertySheet {
public:
    COptionsSheet();
    ~COptionsSheet() override;

    // Sent to the sheet's parent when Apply has changed the store: wParam and lParam are 0.
    static constexpr UINT COLORS_CHANGED = WM_USER + 1;

    CColorPage m_colorPage;
    CDevicePage m_devicePage;
    CTuningStore* m_pStore = nullptr;  // for Apply; not owned

protected:
    const CMessageMap& GetMessageMap() const override;

private:
    void OnApply();
};
