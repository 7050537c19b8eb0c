#include "tones/MidiSysexEvent.h"

#include "platform/base/Exceptions.h"
#include "tones/MidiBytes.h"
#include "tones/MidiDataBlock.h"

bool CMidiSysexEvent::Read(CArchive& archive, DWORD& nBytesRead) {
    nBytesRead = 0;
    try {
        return ReadDataBlock(archive, m_nLength, m_pData, nBytesRead);
    } catch (const CFileException&) {
        return false;
    }
}

bool CMidiSysexEvent::Write(CArchive& archive) const {
    try {
        WriteVarLen(archive, m_nDelta);
        WriteByte(archive, m_nStatus);
        WriteDataBlock(archive, m_nLength, m_pData.get());
        return true;
    } catch (const CFileException&) {
        return false;
    }
}

void CMidiSysexEvent::FillMessage(CMidiMessage& message) const {
    message.m_nKind = MIDI_KIND_SYSEX;
    message.SetData(m_nLength, m_pData.get());
}
