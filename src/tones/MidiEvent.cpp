#include "tones/MidiEvent.h"

void CMidiEvent::GetMessage(CMidiMessage& message) const {
    message.Clear();
    message.m_nDelta = m_nDelta;
    message.m_nStatus = m_nStatus;
    FillMessage(message);
}

void CMidiEvent::InsertAfter(CMidiEvent& node) {
    if (&node == this) {
        return;
    }
    Unlink();
    m_pPrev = &node;
    m_pNext = node.m_pNext;
    if (m_pNext != nullptr) {
        m_pNext->m_pPrev = this;
    }
    node.m_pNext = this;
    m_bLinked = true;
}

void CMidiEvent::Unlink() {
    if (!m_bLinked) {
        return;
    }
    m_pPrev->m_pNext = m_pNext;
    if (m_pNext != nullptr) {
        m_pNext->m_pPrev = m_pPrev;
    }
    m_pPrev = nullptr;
    m_pNext = nullptr;
    m_bLinked = false;
}

bool CMidiEventHead::Read(CArchive& /*archive*/, DWORD& nBytesRead) {
    nBytesRead = 0;
    return false;
}
