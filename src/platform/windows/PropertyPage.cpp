#include "platform/windows/PropertyPage.h"

#include "platform/windows/PropertySheet.h"

CPropertyPage::CPropertyPage(const DialogTemplate& dialogTemplate) : CDialog(dialogTemplate) {}

CPropertyPage::~CPropertyPage() = default;

void CPropertyPage::SetModified(bool bModified) {
    m_bModified = bModified;
    if (m_pSheet != nullptr) {
        m_pSheet->EnableApply();
    }
}
