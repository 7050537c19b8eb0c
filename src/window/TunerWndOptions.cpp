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
    sheet.m_devicePage.m_nWaveChoice = m_store.GetWaveDevice();
    if (sheet.DoModal() != IDOK || m_bClosing) {
        return;
    }
    m_store.SetNeedleColor(clr[CColorPage::NEEDLE]);
    m_store.SetHighColor(clr[CColorPage::HIGH]);
    m_store.SetLowColor(clr[CColorPage::LOW]);
    m_store.SetTextColor(clr[CColorPage::TEXT]);
    m_store.SetMidiDevice(sheet.m_devicePage.m_nMidiChoice);
    const int nOldDevice = m_store.GetWaveDevice();
    m_store.SetWaveDevice(sheet.m_devicePage.m_nWaveChoice);
    if (m_store.GetWaveDevice() != nOldDevice) {
        m_engine.Stop();
        StartCapture();
    }
    OnColorsChanged();
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
