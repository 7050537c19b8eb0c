#include "capture/WaveInDevice.h"

const CRuntimeClass& CWaveInDevice::GetRuntimeClass() const {
    return RuntimeClassOf<CWaveInDevice>("CWaveInDevice", 1);
}

bool CWaveInDevice::Open(UINT uDeviceId, const WAVEFORMATEX& format, CEvent& event) {
    m_pEvent = &event;
    m_nCompleted = 0;
    m_nLastResult = waveInOpen(m_hWaveIn, uDeviceId, format, &CWaveInDevice::WaveInCallback,
                               reinterpret_cast<std::uintptr_t>(this), CALLBACK_FUNCTION);
    return m_nLastResult == MMSYSERR_NOERROR;
}

bool CWaveInDevice::Close() {
    m_nLastResult = waveInClose(m_hWaveIn);
    return m_nLastResult == MMSYSERR_NOERROR;
}

void CWaveInDevice::Reset() {
    if (m_nLastResult == MMSYSERR_NOERROR) {
        m_nLastResult = waveInReset(m_hWaveIn);
    }
}

MMRESULT CWaveInDevice::Start() {
    return m_nLastResult = waveInStart(m_hWaveIn);
}

MMRESULT CWaveInDevice::Stop() {
    return m_nLastResult = waveInStop(m_hWaveIn);
}

MMRESULT CWaveInDevice::PrepareHeader(WAVEHDR& buffer) {
    return m_nLastResult = waveInPrepareHeader(m_hWaveIn, buffer, sizeof(WAVEHDR));
}

MMRESULT CWaveInDevice::AddBuffer(WAVEHDR& buffer) {
    return m_nLastResult = waveInAddBuffer(m_hWaveIn, buffer, sizeof(WAVEHDR));
}

// On the device's thread. The count goes up before the event is set: whoever wakes finds the buffer.
void CWaveInDevice::WaveInCallback(HWAVEIN /*hWaveIn*/, UINT uMessage, std::uintptr_t dwInstance,
                                   std::uintptr_t /*dwParam1*/, std::uintptr_t /*dwParam2*/) {
    if (uMessage == MM_WIM_DATA) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): a callback carries its object as a number
        auto* const pDevice = reinterpret_cast<CWaveInDevice*>(dwInstance);
        ++pDevice->m_nCompleted;
        pDevice->m_pEvent->SetEvent();
    }
}
