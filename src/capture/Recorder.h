#pragma once

#include "capture/WaveBuffer.h"
#include "capture/WaveFormat.h"
#include "capture/WaveInDevice.h"

#include <array>
#include <cstddef>
#include <memory>

// The device and the buffers of one capture. Lives on the capture thread's stack and is used by that thread.
class CRecorder : public CObject {
public:
    static constexpr int MAX_BUFFERS = 40;

    // Closes the device if it is open; only then may the buffers go.
    ~CRecorder() override;
    const CRuntimeClass& GetRuntimeClass() const override;

    // 0 to MAX_BUFFERS.
    void SetBufferCount(int nBufferCount) { m_nBufferCount = nBufferCount; }
    // All buffers, of that size each. False at the first for which there is no memory.
    bool AllocateBuffers(int nBytes);
    bool FreeBuffers();
    // nDeviceNumber: 0 is the preferred device. False when already open or refused.
    bool Open(const CWaveFormat& format, int nDeviceNumber);
    bool Close();
    // Queues every buffer, in order.
    bool AddAllBuffers();

    bool Reset();
    bool Start();
    bool Stop();
    MMRESULT PrepareHeader(CWaveBuffer& buffer) { return m_device.PrepareHeader(buffer); }
    MMRESULT AddBuffer(CWaveBuffer& buffer) { return m_device.AddBuffer(buffer); }
    std::int32_t GetCompleted() const { return m_device.GetCompleted(); }
    void TakeCompleted() { m_device.TakeCompleted(); }

    CWaveBuffer* GetBuffer(int nIndex) const { return m_buffers[static_cast<std::size_t>(nIndex)].get(); }
    void ResetEvent() { m_event.ResetEvent(); }
    // False when no buffer came back in that time.
    bool WaitForBuffer(int nMilliseconds) { return m_event.Wait(nMilliseconds); }

private:
    int m_nBufferCount = 0;
    bool m_bOpen = false;
    CEvent m_event;
    CWaveFormat m_format{1, 11025, 16};
    CWaveInDevice m_device;
    std::array<std::unique_ptr<CWaveBuffer>, MAX_BUFFERS> m_buffers;
};
