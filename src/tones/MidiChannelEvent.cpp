#include "tones/MidiChannelEvent.h"

#include "platform/base/Exceptions.h"
#include "platform/base/String.h"
#include "tones/MidiBytes.h"

#include <cstddef>

namespace {

struct StatusRow {
    const char* szName;
    int nDataLength;
};

constexpr std::array<StatusRow, 8> STATUS_TABLE = {{
    {"Note off       ", 2},
    {"Note on        ", 2},
    {"Poly aftertouch", 2},
    {"Control change ", 2},
    {"Program change ", 1},
    {"Aftertouch     ", 1},
    {"Pitch bend     ", 2},
    {"(error)        ", 0},
}};

const StatusRow& RowOf(BYTE nStatus) {
    return STATUS_TABLE[static_cast<std::size_t>(nStatus >> 4 & 7)];
}

}  // namespace

CMidiChannelEvent::CMidiChannelEvent(DWORD nDelta, BYTE nStatus)
    : CMidiEvent(nDelta, nStatus), m_nDataLength(RowOf(nStatus).nDataLength) {}

bool CMidiChannelEvent::Read(CArchive& archive, DWORD& nBytesRead) {
    nBytesRead = 0;
    try {
        const auto nWanted = static_cast<std::size_t>(m_nDataLength);
        const std::size_t nRead = archive.Read(m_data.data(), nWanted);
        nBytesRead = static_cast<DWORD>(nRead);
        return nRead == nWanted;
    } catch (const CFileException&) {
        return false;
    }
}

bool CMidiChannelEvent::Write(CArchive& archive) const {
    try {
        WriteVarLen(archive, m_nDelta);
        if (m_pPrev == nullptr || m_pPrev->GetStatus() != m_nStatus) {
            WriteByte(archive, m_nStatus);
        }
        archive.Write(m_data.data(), static_cast<std::size_t>(m_nDataLength));
        return true;
    } catch (const CFileException&) {
        return false;
    }
}

void CMidiChannelEvent::Dump(CFile& file) const {
    CString strLine = FormatText("Midi %02X %-16s", m_nStatus, RowOf(m_nStatus).szName);
    for (std::size_t i = 0; i < static_cast<std::size_t>(m_nDataLength); ++i) {
        strLine += FormatText(" %02X", m_data[i]);
    }
    file.WriteString(strLine + "\n");
}

void CMidiChannelEvent::GetName(CString& strText) const {
    strText = RowOf(m_nStatus).szName;
}

void CMidiChannelEvent::FillMessage(CMidiMessage& message) const {
    message.m_nKind = MIDI_KIND_CHANNEL;
    message.m_nData1 = m_data[0];
    message.m_nData2 = m_data[1];
}
