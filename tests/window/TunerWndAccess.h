#pragma once

#include "platform/multimedia/TimeGetTime.h"
#include "window/FrameRate.h"
#include "window/TunerWnd.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

// Looks inside the main window, and sets what its menu and its dialogs do.
class CTunerWndAccess {
public:
    explicit CTunerWndAccess(CTunerWnd& wnd) : m_wnd(wnd) {}

    CTuningStore& Store() { return m_wnd.m_store; }
    CPitchEngine& Engine() { return m_wnd.m_engine; }
    CListBox& List() { return m_wnd.m_lbTunings; }
    const Tuning& Current() { return *m_wnd.m_store.GetCurrentTuning(); }
    bool CanDelete() { return m_wnd.m_btnDel.IsWindowEnabled(); }
    CString FrameRateText() { return m_wnd.m_stcFps.GetWindowText(); }
    // On the thread that runs frames: the next one shows the text.
    void MakeFrameRateDue() { m_wnd.m_dwFpsStart = timeGetTime() - 2 * FRAME_RATE_PERIOD; }
    // While no frame runs.
    std::int64_t FrameCount() { return m_wnd.m_nFrames; }

    std::vector<CString> Rows() {
        std::vector<CString> rows;
        rows.reserve(static_cast<std::size_t>(List().GetCount()));
        for (int i = 0; i < List().GetCount(); ++i) {
            rows.push_back(List().GetText(i));
        }
        return rows;
    }

    // A string set to another note by hand.
    void SetString(std::size_t nString, int nSemitone, int nOctave) {
        m_wnd.m_store.GetCurrentTuning()->m_strings.at(nString).Set(nSemitone, nOctave);
        m_wnd.SyncListToCurrent();
    }
    void SetAFrequency(float fA) {
        m_wnd.m_engine.SetReference(fA);
        const std::scoped_lock lock(m_wnd.GetPictureLock());
        m_wnd.m_coarse.SetAFrequency(fA);
    }
    void StopCapture() { m_wnd.m_engine.Stop(); }

private:
    CTunerWnd& m_wnd;
};
