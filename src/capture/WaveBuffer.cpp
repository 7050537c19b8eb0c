#include "capture/WaveBuffer.h"

#include <new>

CWaveBuffer::CWaveBuffer(int nBytes)
    : m_pData(nBytes >= 0 ? new (std::nothrow) char[static_cast<std::size_t>(nBytes)]() : nullptr) {
    if (m_pData) {
        lpData = m_pData.get();
        dwBufferLength = static_cast<DWORD>(nBytes);
    }
}
