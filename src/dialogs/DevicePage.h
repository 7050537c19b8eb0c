#pragma once

#include "platform/windows/ComboBox.h"
#include "platform/windows/ListBox.h"
#include "platform/windows/PropertyPage.h"

// The page of the recording device and the MIDI output, with what the chosen ones can do. Choices are rows of
// the combo boxes: 0 is the system's preferred device, n the device n - 1 of its list, -1 none. The page only
// reports them.
class CDevicePage : public CPropertyPage {
public:
    CDevicePage();
    ~CDevicePage() override;

    // Fill them before DoModal. They follow the combo boxes; a page that nobody looked at leaves them alone.
    int m_nMidiChoice = 0;
    int m_nWaveChoice = 0;
    // Of the chosen recording device: where it has one, it counts before the row.
    CString m_strWaveKey;

protected:
    const CMessageMap& GetMessageMap() const override;
    void DoDataExchange(CDataExchange* pDX) override;
    bool OnInitDialog() override;

private:
    void FillWaveDevices();
    void FillMidiDevices();
    void OnWaveDeviceChange();
    void OnMidiDeviceChange();

    CListBox m_lbWave;
    CListBox m_lbMidi;
    CComboBox m_cbWave;
    CComboBox m_cbMidi;
};
