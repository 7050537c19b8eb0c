#pragma once

#include "platform/windows/Dialog.h"

// Asks for the name of a new tuning. DoModal gives IDOK with whatever was typed in m_strName, be it empty;
// after Cancel m_strName is as it was before.
class CTuningNameDialog : public CDialog {
public:
    explicit CTuningNameDialog(CWnd* pParent = nullptr);
    ~CTuningNameDialog() override;

    CString m_strName;

protected:
    bool OnInitDialog() override;
    void OnOK() override;
};
