#include "capture/CaptureLoop.h"
#include "capture/CaptureThread.h"
#include "capture/Recorder.h"

namespace {

// False for values with which no block could ever be made.
bool AreUsable(const CaptureControl& control) {
    constexpr int nMostSamples = 1 << 24;
    return control.m_nBufferCount >= 1 && control.m_nBufferCount <= CRecorder::MAX_BUFFERS &&
           control.m_nBufferSamples >= 1 && control.m_nBufferSamples <= nMostSamples &&
           control.m_nBlockSamples >= 1 && control.m_nSampleRate >= 1 && control.m_pfDest != nullptr &&
           control.m_pfnBlockReady != nullptr;
}

bool OpenRecorder(const CaptureControl& control, CRecorder& recorder) {
    if (!AreUsable(control)) {
        return false;
    }
    recorder.SetBufferCount(control.m_nBufferCount);
    return recorder.AllocateBuffers(2 * control.m_nBufferSamples) &&
           recorder.Open(CWaveFormat(1, control.m_nSampleRate, 16), control.m_nDevice);
}

void Settle(CaptureControl& control, CaptureOpening opening) {
    control.m_opening = opening;
    control.m_opened.SetEvent();
}

}  // namespace

int CaptureThreadProc(CaptureControl& control) {
    CRecorder recorder;
    if (!OpenRecorder(control, recorder)) {
        control.m_bRunning = false;
        Settle(control, CaptureOpening::Failed);
        return CAPTURE_FAILED;
    }
    Settle(control, CaptureOpening::Open);
    recorder.AddAllBuffers();
    CCaptureLoop(control, recorder).Run();
    recorder.Reset();
    recorder.Close();
    recorder.FreeBuffers();
    return CAPTURE_STOPPED;
}
