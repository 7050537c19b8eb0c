#include "tones/MidiEvent.h"

void CMidiEvent::GetMessage(CMidiMessage& message) const {
    message.Clear();
    message.m_nDelta = m_nDelta;
    message.m_nStatus = m_nStatus;
    FillMessage(message);
}

bool CMidiEventHead::Read(CArchive& /*archive*/, DWORD& nBytesRead) {
    nBytesRead = 0;
    return false;
}
