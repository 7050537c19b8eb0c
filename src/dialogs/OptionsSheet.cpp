#include "dialogs/OptionsSheet.h"

#include "tuning/TuningStore.h"

#include <array>

COptionsSheet::COptionsSheet() : CPropertySheet("[高音 ]") {
    AddPage(&m_colorPage);
    AddPage(&m_devicePage);
}

COptionsSheet::~COptionsSheet() = default;

const CMessageMap& COptionsSheet::GetMessageMap() const {
    static constexpr std::array entries{MapCommand<&COptionsSheet::OnApply>(ID_APPLY_NOW)};
    static const CMessageMap map{entries, &CPropertySheet::GetMessageMap()};
    return map;
}

void COptionsSheet::OnApply() {
    GetActivePage()->UpdateData();
    m_pStore->SetNeedleColor(m_colorPage.m_clr[CColorPage::NEEDLE]);
    m_pStore->SetHighColor(m_colorPage.m_clr[CColorPage::HIGH]);
    m_pStore->SetLowColor(m_colorPage.m_clr[CColorPage::LOW]);
    m_pStore->SetTextColor(m_colorPage.m_clr[CColorPage::TEXT]);
    if (CWnd* const pParent = GetParent()) {
        pParent->SendMessage(COLORS_CHANGED);
    }
    UpdateData();
    m_colorPage.SetModified(false);
}
