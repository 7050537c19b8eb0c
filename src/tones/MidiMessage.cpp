#include "tones/MidiMessage.h"

#include <algorithm>
#include <cstddef>

void CMidiMessage::Clear() {
    m_nTrack = 0;
    m_nKind = MIDI_KIND_NONE;
    m_nDelta = 0;
    m_nStatus = 0;
    m_nData1 = 0;
    m_nData2 = 0;
    m_nMetaType = 0;
    SetData(0, nullptr);
}

void CMidiMessage::SetData(int nLength, const BYTE* pData) {
    m_nDataLength = pData != nullptr ? std::max(nLength, 0) : 0;
    m_pData.reset();
    if (m_nDataLength > 0 && pData != nullptr) {
        const auto nBytes = static_cast<std::size_t>(m_nDataLength);
        m_pData = std::make_unique_for_overwrite<BYTE[]>(nBytes);
        std::copy_n(pData, nBytes, m_pData.get());
    }
}
