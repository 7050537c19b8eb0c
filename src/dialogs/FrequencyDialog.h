#pragma once

#include "dialogs/ForwardingSlider.h"
#include "platform/windows/Button.h"
#include "platform/windows/Dialog.h"
#include "platform/windows/Edit.h"

// Asks for the frequency of the note A, by a slider in steps of a tenth of a hertz or as a number. The two
// are views of one value: a number within 430 to 450 Hz moves the slider, the release of the slider writes
// the number. DoModal gives IDOK only while the text is such a number.
class CFrequencyDialog : public CDialog {
public:
    explicit CFrequencyDialog(CWnd* pParent = nullptr);
    ~CFrequencyDialog() override;

    // Hz. Set it before DoModal, read it after IDOK.
    float m_fFrequency = 0.0F;

protected:
    const CMessageMap& GetMessageMap() const override;
    void DoDataExchange(CDataExchange* pDX) override;
    bool OnInitDialog() override;
    // Closes the dialog if the text is a frequency in range; else says so and stays.
    void OnOK() override;

private:
    void OnSliderReleased();
    void OnEditChange();
    void OnReset();
    // From real moves over the dialog and from the slider's notices.
    void OnMouseMove();

    void TakeSliderPosition();
    void ShowFrequency();
    float GetTypedFrequency() const;

    CEdit m_edit;
    CForwardingSlider m_slider;
    CButton m_btnReset;
};
