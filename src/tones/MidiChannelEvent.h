#pragma once

#include "tones/MidiEvent.h"

#include <array>

// A voice message of one channel: a status and one or two data bytes, which are kept as they came.
class CMidiChannelEvent final : public CMidiEvent {
public:
    CMidiChannelEvent(DWORD nDelta, BYTE nStatus);

    bool Read(CArchive& archive, DWORD& nBytesRead) override;
    // Leaves the status out where the event before it in the list has the same.
    bool Write(CArchive& archive) const override;
    void Dump(CFile& file) const override;
    void GetName(CString& strText) const override;
    void GetText(CString& strText) const override { strText.clear(); }
    DWORD GetValue() const override { return 0; }
    int GetKind() const override { return 0; }
    void FillMessage(CMidiMessage& message) const override;

private:
    std::array<BYTE, 2> m_data{};
    int m_nDataLength;
};
