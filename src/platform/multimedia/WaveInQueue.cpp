#include "platform/multimedia/WaveInQueue.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

CWaveInQueue::CWaveInQueue(WaveInNotify notify) : m_notify(std::move(notify)) {}

MMRESULT CWaveInQueue::Add(WAVEHDR& header) {
    if ((header.dwFlags & WHDR_PREPARED) == 0) {
        return WAVERR_UNPREPARED;
    }
    const std::lock_guard lock(m_mutex);
    if ((header.dwFlags & WHDR_INQUEUE) != 0) {
        return WAVERR_STILLPLAYING;
    }
    header.dwFlags = (header.dwFlags & ~WHDR_DONE) | WHDR_INQUEUE;
    header.dwBytesRecorded = 0;
    header.lpNext = nullptr;
    (m_pFirst == nullptr ? m_pFirst : m_pLast->lpNext) = &header;
    m_pLast = &header;
    return MMSYSERR_NOERROR;
}

void CWaveInQueue::Write(std::span<const std::int16_t> samples) {
    while (!samples.empty()) {
        WAVEHDR* pFull = nullptr;
        {
            const std::lock_guard lock(m_mutex);
            if (m_pFirst == nullptr) {
                return;
            }
            const std::size_t nRoom = (m_pFirst->dwBufferLength - m_pFirst->dwBytesRecorded) / 2;
            const std::size_t nPiece = std::min(nRoom, samples.size());
            std::memcpy(m_pFirst->lpData + m_pFirst->dwBytesRecorded, samples.data(), 2 * nPiece);
            m_pFirst->dwBytesRecorded += static_cast<DWORD>(2 * nPiece);
            samples = samples.subspan(nPiece);
            if (nPiece == nRoom) {
                pFull = &Detach();
            }
        }
        if (pFull != nullptr) {
            m_notify(MM_WIM_DATA, pFull);
        }
    }
}

void CWaveInQueue::WriteSilence(std::size_t nSamples) {
    constexpr std::array<std::int16_t, 512> silence{};
    while (nSamples > 0) {
        const std::size_t nPiece = std::min(nSamples, silence.size());
        Write(std::span(silence).first(nPiece));
        nSamples -= nPiece;
    }
}

void CWaveInQueue::GiveBackAll() {
    for (;;) {
        WAVEHDR* pBuffer = nullptr;
        {
            const std::lock_guard lock(m_mutex);
            if (m_pFirst == nullptr) {
                return;
            }
            pBuffer = &Detach();
        }
        m_notify(MM_WIM_DATA, pBuffer);
    }
}

WAVEHDR& CWaveInQueue::Detach() {
    WAVEHDR& header = *m_pFirst;
    m_pFirst = header.lpNext;
    header.lpNext = nullptr;
    header.dwFlags = (header.dwFlags & ~WHDR_INQUEUE) | WHDR_DONE;
    return header;
}
