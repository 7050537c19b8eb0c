#pragma once

#include "tones/MidiEvent.h"

#include <memory>

inline constexpr BYTE META_SET_TEMPO = 0x51;

// An event that concerns the song and not the device: tempo, signatures, texts.
class CMidiMetaEvent final : public CMidiEvent {
public:
    CMidiMetaEvent(DWORD nDelta, BYTE nStatus) : CMidiEvent(nDelta, nStatus) {}

    bool Read(CArchive& archive, DWORD& nBytesRead) override;
    bool Write(CArchive& archive) const override;
    void Dump(CFile& file) const override;
    void GetName(CString& strText) const override;
    // The data as text, at most 255 bytes of it.
    void GetText(CString& strText) const override;
    // A tempo in microseconds per quarter note; a time signature as four bytes from the low end, numerator,
    // denominator, and the two that follow; a key signature as the two bytes of a number. 0 for everything
    // else, and where data bytes are missing.
    DWORD GetValue() const override;
    int GetKind() const override;
    void FillMessage(CMidiMessage& message) const override;

private:
    BYTE m_nType = 0;
    int m_nLength = 0;
    std::unique_ptr<BYTE[]> m_pData;  // none for a length of 0
};
