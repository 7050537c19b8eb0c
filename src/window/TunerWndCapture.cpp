#include "platform/multimedia/WaveIn.h"
#include "platform/multimedia/WaveInRow.h"
#include "platform/windows/MessageBox.h"
#include "platform/windows/WinApp.h"
#include "window/CaptureLadder.h"
#include "window/TunerWnd.h"

namespace {

// A device that has not told by then whether it opens is taken for one that will.
constexpr int OPENING_WAIT_MS = 5000;

constexpr const char* NO_DEVICE_TEXT =
    "Fretvane was unable to find any usable recording device on this computer.  "
    "To use this program a 16-bit sound card must be installed";
constexpr const char* NO_CAPTURE_TEXT =
    "Unable to use your sound card. Try a different recording device in the options dialog box "
    "or click the help button in the main window for further help.";

void ShowFailure(const char* szText, const char* szCaption) {
    const CWinApp* pApp = GetApp();
    MessageBox(pApp != nullptr ? pApp->GetMainWnd() : nullptr, szText, szCaption, MB_OK | MB_ICONEXCLAMATION);
}

}  // namespace

void CTunerWnd::StartCapture() {
    if (waveInGetNumDevs() == 0) {
        ShowFailure(NO_DEVICE_TEXT, "Error: No sound card found");
        m_errorLog.Log("Unable to find any recording device");
        return;
    }
    const int nDevice = FindWaveRow(m_strWaveKey, m_store.GetWaveDevice());
    if (nDevice >= 0) {
        m_store.SetWaveDevice(nDevice);
        m_strWaveKey = KeyOfWaveRow(nDevice);
    }
    m_engine.SetHop(CutHop(m_store.GetHop()));
    for (const CaptureAttempt& attempt : CAPTURE_LADDER) {
        if (TryCapture(attempt, nDevice)) {
            m_engine.SetReference(m_store.GetAFrequency());
            m_engine.SetTimeGate(false);
            m_engine.SetAdaptHop(true);
            return;
        }
    }
    ShowFailure(NO_CAPTURE_TEXT, "Error: Unable to use recording device");
    m_errorLog.Log("Unable any open any recording device");
}

// The engine's true says only that the thread runs; what became of the device the thread tells afterwards. A
// thread that had no luck is cleared away, so that the next attempt finds room.
bool CTunerWnd::TryCapture(const CaptureAttempt& attempt, int nDevice) {
    CCaptureThread& capture = m_engine.GetCapture();
    capture.ClearFailed();
    if (!m_engine.Start(FrameCallback, this, attempt.bPreferredDevice ? 0 : nDevice, attempt.nSampleRate,
                        attempt.nBufferSamples, attempt.nBlockSamples, attempt.fLowestFrequency)) {
        return false;
    }
    if (capture.WaitUntilOpen(OPENING_WAIT_MS) == CaptureOpening::Failed) {
        capture.ClearFailed();
        return false;
    }
    return true;
}

// A minimised window moves, and so does a restored one: nothing is analysed for a display that nobody sees.
void CTunerWnd::OnMove() {
    Default();
    m_engine.GetCapture().SetPaused(IsIconic());
}
