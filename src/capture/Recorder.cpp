#include "capture/Recorder.h"

#include <new>

CRecorder::~CRecorder() {
    if (m_bOpen) {
        Close();
    }
}

const CRuntimeClass& CRecorder::GetRuntimeClass() const {
    return RuntimeClassOf<CRecorder>("CRecorder", 1);
}

bool CRecorder::AllocateBuffers(int nBytes) {
    for (int i = 0; i < m_nBufferCount; ++i) {
        auto& pBuffer = m_buffers[static_cast<std::size_t>(i)];
        pBuffer.reset(new (std::nothrow) CWaveBuffer(nBytes));
        if (!pBuffer || pBuffer->GetData() == nullptr) {
            return false;
        }
    }
    return true;
}

bool CRecorder::FreeBuffers() {
    for (auto& pBuffer : m_buffers) {
        pBuffer.reset();
    }
    return true;
}

bool CRecorder::Open(const CWaveFormat& format, int nDeviceNumber) {
    if (m_bOpen) {
        return false;
    }
    // The preferred device, number 0, becomes WAVE_MAPPER.
    const UINT uDeviceId = static_cast<UINT>(nDeviceNumber) - 1;
    m_bOpen = m_device.Open(uDeviceId, format, m_event);
    return m_bOpen;
}

bool CRecorder::Close() {
    if (!m_bOpen || !m_device.Close()) {
        return false;
    }
    m_bOpen = false;
    return true;
}

bool CRecorder::AddAllBuffers() {
    for (int i = 0; i < m_nBufferCount; ++i) {
        PrepareHeader(*GetBuffer(i));
        AddBuffer(*GetBuffer(i));
    }
    return true;
}

bool CRecorder::Reset() {
    m_device.Reset();
    return true;
}

bool CRecorder::Start() {
    m_device.Start();
    return true;
}

bool CRecorder::Stop() {
    m_device.Stop();
    return true;
}
