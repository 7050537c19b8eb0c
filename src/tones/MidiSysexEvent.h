#pragma once

#include "tones/MidiEvent.h"

#include <memory>

// A message for one maker's device. It is kept, and never sent.
class CMidiSysexEvent final : public CMidiEvent {
public:
    CMidiSysexEvent(DWORD nDelta, BYTE nStatus) : CMidiEvent(nDelta, nStatus) {}

    bool Read(CArchive& archive, DWORD& nBytesRead) override;
    bool Write(CArchive& archive) const override;
    void Dump(CFile& file) const override { file.WriteString("Sysex\n"); }
    void GetName(CString& strText) const override { strText.clear(); }
    void GetText(CString& strText) const override { strText.clear(); }
    DWORD GetValue() const override { return 0; }
    int GetKind() const override { return 0; }
    void FillMessage(CMidiMessage& message) const override;

private:
    int m_nLength = 0;
    std::unique_ptr<BYTE[]> m_pData;
};
