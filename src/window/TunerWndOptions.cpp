#include "dialogs/OptionsSheet.h"
#include "platform/windows/ClientDc.h"
#include "window/TunerWnd.h"

#include <mutex>

void CTunerWnd::OnOptions() {
    COptionsSheet sheet;
    sheet.m_pStore = &m_store;
    auto& clr = sheet.m_colorPage.m_clr;
    clr[CColorPage::NEEDLE] = m_store.GetNeedleColor();
    clr[CColorPage::HIGH] = m_store.GetHighColor();
    clr[CColorPage::LOW] = m_store.GetLowColor();
    clr[CColorPage::TEXT] = m_store.GetTextColor();
    sheet.m_devicePage.m_nMidiChoice = m_store.GetMidiDevice();
    const CDevicePage& devices = sheet.m_devicePage;
    sheet.m_devicePage.m_nWaveChoice = m_store.GetWaveDevice();
    sheet.m_devicePage.m_strWaveKey = m_strWaveKey;
    if (sheet.DoModal() != IDOK || m_bClosing) {
        return;
    }
    m_store.SetNeedleColor(clr[CColorPage::NEEDLE]);
    m_store.SetHighColor(clr[CColorPage::HIGH]);
    m_store.SetLowColor(clr[CColorPage::LOW]);
    m_store.SetTextColor(clr[CColorPage::TEXT]);
    m_store.SetMidiDevice(devices.m_nMidiChoice);
    ChooseWaveDevice(devices.m_nWaveChoice, devices.m_strWaveKey);
    OnColorsChanged();
}

// The capture starts anew on another device only. The same one may stand in another row by now, or be away.
void CTunerWnd::ChooseWaveDevice(int nRow, const CString& strKey) {
    const bool bOther = strKey != m_strWaveKey || (strKey.empty() && nRow != m_store.GetWaveDevice());
    if (bOther || nRow >= 0) {
        m_store.SetWaveDevice(nRow);
    }
    if (bOther) {
        m_strWaveKey = strKey;
        m_engine.Stop();
        StartCapture();
    }
}

LRESULT CTunerWnd::OnColorsChanged() {
    CClientDC dc(this);
    {
        const std::scoped_lock lock(GetPictureLock());
        m_levelMeter.SetColors(m_store.GetHighColor(), m_store.GetLowColor());
        m_levelMeter.Draw(&dc, true);
    }
    {
        const std::scoped_lock lock(GetPictureLock());
        m_fineDial.SetColor(m_store.GetNeedleColor());
        m_fineDial.SetDigitColor(m_store.GetTextColor());
        m_fineDial.Draw(&dc, true, false);
        // A needle that has faded to grey had better stay so: the next frame draws it again.
        m_clrFadeDrawn = CLR_INVALID;
    }
    const std::scoped_lock lock(GetPictureLock());
    m_coarse.SetColor(m_store.GetNeedleColor());
    m_coarse.Rebuild();
    m_coarse.Draw(&dc, true);
    return 0;
}
