#pragma once

#include "platform/base/Types.h"

#include <memory>

inline constexpr int MIDI_KIND_CHANNEL = 1;
inline constexpr int MIDI_KIND_META = 2;
inline constexpr int MIDI_KIND_SYSEX = 3;
inline constexpr int MIDI_KIND_NONE = 4;

// The form in which an event reaches the sequencer.
class CMidiMessage {
public:
    CMidiMessage() = default;
    virtual ~CMidiMessage() = default;
    CMidiMessage(const CMidiMessage&) = delete;
    CMidiMessage& operator=(const CMidiMessage&) = delete;

    // Back to an empty message of no kind.
    void Clear();
    // Replaces the data by a copy; a length of 0 leaves none.
    void SetData(int nLength, const BYTE* pData);

    int m_nTrack = 0;  // counted from 1
    int m_nKind = MIDI_KIND_NONE;
    DWORD m_nDelta = 0;  // ticks since the event before it
    BYTE m_nStatus = 0;
    BYTE m_nData1 = 0;
    BYTE m_nData2 = 0;
    BYTE m_nMetaType = 0;
    int m_nDataLength = 0;
    std::unique_ptr<BYTE[]> m_pData;
};
