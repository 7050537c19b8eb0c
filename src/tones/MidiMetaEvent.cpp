#include "tones/MidiMetaEvent.h"

#include "platform/base/Exceptions.h"
#include "platform/base/String.h"
#include "tones/MidiBytes.h"
#include "tones/MidiDataBlock.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

constexpr BYTE SEQUENCE_NUMBER = 0x00;
constexpr BYTE FIRST_TEXT = 0x01;
constexpr BYTE LAST_TEXT = 0x07;
constexpr BYTE CHANNEL_PREFIX = 0x20;
constexpr BYTE TIME_SIGNATURE = 0x58;
constexpr BYTE KEY_SIGNATURE = 0x59;
constexpr int LONGEST_TEXT = 255;

struct TypeRow {
    BYTE nType;
    const char* szName;
    int nKind;
};

constexpr std::array<TypeRow, 15> TYPE_TABLE = {{
    {SEQUENCE_NUMBER, "Sequence number", 0},
    {FIRST_TEXT, "General text   ", 1},
    {0x02, "Copyright text ", 1},
    {0x03, "Track name     ", 1},
    {0x04, "Instrument name", 1},
    {0x05, "Song lyric     ", 1},
    {0x06, "Marking        ", 1},
    {LAST_TEXT, "Cue point      ", 1},
    {CHANNEL_PREFIX, "Channel prefix ", 0},
    {0x2F, "End of track   ", 0},
    {META_SET_TEMPO, "Set tempo      ", 2},
    {0x54, "SMPTE offset   ", 0},
    {TIME_SIGNATURE, "Time signature ", 3},
    {KEY_SIGNATURE, "Key signature  ", 4},
    {0x7F, "Sequencer      ", 0},
}};
constexpr TypeRow UNKNOWN_TYPE{0, "Unknown        ", 0};

const TypeRow& RowOf(BYTE nType) {
    const auto* const pFound = std::find_if(TYPE_TABLE.begin(), TYPE_TABLE.end(),
                                            [nType](const TypeRow& row) { return row.nType == nType; });
    return pFound == TYPE_TABLE.end() ? UNKNOWN_TYPE : *pFound;
}

int ByteOf(DWORD nValue, int nByte) {
    return static_cast<int>(nValue >> 8 * nByte & 0xFF);
}

}  // namespace

bool CMidiMetaEvent::Read(CArchive& archive, DWORD& nBytesRead) {
    nBytesRead = 0;
    try {
        if (!ReadByte(archive, m_nType)) {
            return false;
        }
        DWORD nBlock = 0;
        const bool bRead = ReadDataBlock(archive, m_nLength, m_pData, nBlock);
        nBytesRead = 1 + nBlock;
        return bRead;
    } catch (const CFileException&) {
        return false;
    }
}

bool CMidiMetaEvent::Write(CArchive& archive) const {
    try {
        WriteVarLen(archive, m_nDelta);
        WriteByte(archive, m_nStatus);
        WriteByte(archive, m_nType);
        WriteDataBlock(archive, m_nLength, m_pData.get());
        return true;
    } catch (const CFileException&) {
        return false;
    }
}

void CMidiMetaEvent::Dump(CFile& file) const {
    const DWORD nValue = GetValue();
    CString strValue;
    if (m_nType >= FIRST_TEXT && m_nType <= LAST_TEXT) {
        GetText(strValue);
    } else if (m_nType == SEQUENCE_NUMBER || m_nType == CHANNEL_PREFIX || m_nType == META_SET_TEMPO) {
        strValue = FormatText("%d", static_cast<int>(nValue));
    } else if (m_nType == TIME_SIGNATURE) {
        strValue = FormatText("%d:%d  %d %d", ByteOf(nValue, 0), ByteOf(nValue, 1), ByteOf(nValue, 2),
                              ByteOf(nValue, 3));
    }
    file.WriteString(FormatText("Meta %02X %s  %s\n", m_nType, RowOf(m_nType).szName, strValue.c_str()));
}

void CMidiMetaEvent::GetName(CString& strText) const {
    strText = RowOf(m_nType).szName;
}

void CMidiMetaEvent::GetText(CString& strText) const {
    strText.assign(m_pData.get(), m_pData.get() + std::min(m_nLength, LONGEST_TEXT));
}

DWORD CMidiMetaEvent::GetValue() const {
    const auto nByte = [this](int i) { return static_cast<DWORD>(m_pData[static_cast<std::size_t>(i)]); };
    if (m_nType == META_SET_TEMPO && m_nLength >= 3) {
        return nByte(0) << 16 | nByte(1) << 8 | nByte(2);
    }
    if (m_nType == TIME_SIGNATURE && m_nLength >= 4) {
        const DWORD nDenominator = nByte(1) < 8 ? 1U << nByte(1) : 0;
        return nByte(0) | nDenominator << 8 | nByte(2) << 16 | nByte(3) << 24;
    }
    if (m_nType == KEY_SIGNATURE && m_nLength >= 2) {
        return nByte(0) << 8 | nByte(1);
    }
    return 0;
}

int CMidiMetaEvent::GetKind() const {
    return RowOf(m_nType).nKind;
}

void CMidiMetaEvent::FillMessage(CMidiMessage& message) const {
    message.m_nKind = MIDI_KIND_META;
    message.m_nMetaType = m_nType;
    message.SetData(m_nLength, m_pData.get());
}
