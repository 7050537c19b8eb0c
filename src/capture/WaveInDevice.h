#pragma once

#include "platform/base/Object.h"
#include "platform/multimedia/WaveIn.h"
#include "platform/threads/Event.h"

#include <atomic>
#include <cstdint>

// One recording handle. It keeps the result of the latest call and counts the buffers that the device has
// filled and nobody has taken yet. Used by the capture thread; only the count is shared with the device's own
// thread. Destroying it does not close the handle.
class CWaveInDevice : public CObject {
public:
    const CRuntimeClass& GetRuntimeClass() const override;

    // uDeviceId: the platform's number or WAVE_MAPPER. The event, which must live until Close, is set for
    // each filled buffer. False when the device refuses; GetLastResult tells why.
    bool Open(UINT uDeviceId, const WAVEFORMATEX& format, CEvent& event);
    bool Close();
    // Does nothing after a call that failed, or before any.
    void Reset();
    MMRESULT Start();
    MMRESULT Stop();
    MMRESULT PrepareHeader(WAVEHDR& buffer);
    MMRESULT AddBuffer(WAVEHDR& buffer);

    std::int32_t GetCompleted() const { return m_nCompleted; }
    void TakeCompleted() { --m_nCompleted; }
    MMRESULT GetLastResult() const { return m_nLastResult; }

private:
    static void WaveInCallback(HWAVEIN hWaveIn, UINT uMessage, std::uintptr_t dwInstance,
                               std::uintptr_t dwParam1, std::uintptr_t dwParam2);

    CEvent* m_pEvent = nullptr;
    std::atomic<std::int32_t> m_nCompleted = 0;
    HWAVEIN m_hWaveIn = 0;
    MMRESULT m_nLastResult = MMSYSERR_BADDEVICEID;
};
