#include "platform/multimedia/TimeGetTime.h"
#include "platform/threads/Sleep.h"
#include "platform/windows/ClientDc.h"
#include "window/FrameRate.h"
#include "window/NeedleFade.h"
#include "window/Strongest.h"
#include "window/TunerWnd.h"

#include <mutex>

// All of this runs on the capture thread. Whatever touches the window comes behind a look at m_bClosing.

void CTunerWnd::FrameCallback(void* pParam) {
    static_cast<CTunerWnd*>(pParam)->OnFrame();
}

void CTunerWnd::OnFrame() {
    if (m_bClosing) {
        return;
    }
    ShowReading();
    if (m_bClosing || !DrawReading() || m_bClosing) {
        return;
    }
    CountFrame();
    m_bPrevHolding = m_tracker.IsHolding();
    Sleep(0);
}

// Takes the strongest candidate to the tracker, and what that makes of it to the widgets.
void CTunerWnd::ShowReading() {
    const auto candidates = m_engine.GetCandidates();
    const NoteReading reading =
        m_tracker.Update(candidates[FindStrongest(candidates)], static_cast<float>(m_engine.GetHop()),
                         m_engine.GetSampleRate(), m_engine.GetLevel());
    m_spokenReading.Publish(reading, m_tracker.IsHolding());
    m_levelMeter.SetLevel(m_tracker.GetLevel());
    m_coarse.SetFrequency(reading.frequency);
    m_fineDial.SetCents(static_cast<int>(reading.cents));
    m_fineDial.SetNote(reading.semitone);
    if (m_tracker.IsHolding() != m_bPrevHolding) {
        m_fFadeStart = static_cast<float>(timeGetTime());
    }
    m_bPrevHolding = m_tracker.IsHolding();
}

// False if closing began on the way.
bool CTunerWnd::DrawReading() {
    CClientDC dc(this);
    return DrawLiveWidgets(dc);
}

bool CTunerWnd::DrawLiveWidgets(CDC& dc) {
    if (m_bClosing) {
        return false;
    }
    {
        const std::scoped_lock lock(GetPictureLock());
        m_levelMeter.Draw(&dc, false);
    }
    if (m_bClosing) {
        return false;
    }
    {
        const std::scoped_lock lock(GetPictureLock());
        m_coarse.Draw(&dc, false);
    }
    if (m_bClosing) {
        return false;
    }
    DrawDial(dc);
    return true;
}

void CTunerWnd::DrawDial(CDC& dc) {
    const std::scoped_lock lock(GetPictureLock());
    m_clrFade = GetFadedNeedleColor();
    const bool bColorChanged = m_clrFade != m_clrFadeDrawn;
    if (bColorChanged) {
        m_fineDial.SetColor(m_clrFade);
        m_clrFadeDrawn = m_clrFade;
    }
    m_fineDial.Draw(&dc, false, bColorChanged);
}

COLORREF CTunerWnd::GetFadedNeedleColor() const {
    const COLORREF clrNeedle = m_store.GetNeedleColor();
    if (!m_bPrevHolding) {
        return clrNeedle;
    }
    const double dElapsed = static_cast<double>(timeGetTime()) - static_cast<double>(m_fFadeStart);
    return FadeNeedleColor(clrNeedle, static_cast<float>(dElapsed), m_fFadeHold, m_fFadeLength);
}

void CTunerWnd::CountFrame() {
    ++m_nFrames;
    if (!m_bShowFps) {
        return;
    }
    const DWORD dwNow = timeGetTime();
    if (IsFrameRateDue(m_dwFpsStart, dwNow)) {
        // Off the message loop's thread the text is only noted: nobody waits for it.
        m_stcFps.SetWindowText(FormatFrameRate(m_nFrames, dwNow - m_dwFpsStart));
        if (!m_bShowFps) {
            // Switched off since the look at it: this text came behind the one that cleared it.
            m_stcFps.SetWindowText("");
        }
        m_dwFpsStart = dwNow;
        m_nFrames = 0;
    }
}

void CTunerWnd::ToggleFrameRate() {
    m_bShowFps = !m_bShowFps;
    if (!m_bShowFps) {
        m_stcFps.SetWindowText("");
    }
}
