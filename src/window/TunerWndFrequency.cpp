#include "dialogs/FrequencyDialog.h"
#include "platform/base/String.h"
#include "platform/windows/ClientDc.h"
#include "window/TunerWnd.h"

#include <mutex>

void CTunerWnd::OnAFrequency() {
    CFrequencyDialog dialog(this);
    dialog.m_fFrequency = m_store.GetAFrequency();
    if (dialog.DoModal() != IDOK || m_bClosing) {
        return;
    }
    const float fFrequency = dialog.m_fFrequency;
    m_store.SetAFrequency(fFrequency);
    FormatAButton();
    m_btnA.SetWindowText(m_strAButton);
    {
        CClientDC dc(this);
        const std::scoped_lock lock(GetPictureLock());
        m_coarse.SetAFrequency(fFrequency);
        m_coarse.Draw(&dc, true);
    }
    m_engine.SetReference(fFrequency);
    m_tonePlayer.SetAFrequency(fFrequency);
}

void CTunerWnd::FormatAButton() {
    m_strAButton = FormatText("%s%.1f%s", "&A : ", static_cast<double>(m_store.GetAFrequency()), " Hz");
}
