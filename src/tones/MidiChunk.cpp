#include "tones/MidiChunk.h"

#include "platform/base/Exceptions.h"
#include "tones/MidiBytes.h"

#include <string_view>

namespace {

constexpr std::string_view HEADER_ID = "MThd";
constexpr std::string_view TRACK_ID = "MTrk";
constexpr DWORD HEADER_BYTES = 6;

}  // namespace

bool CMidiChunk::ReadChunkHeader(CArchive& archive) {
    m_nKind = CHUNK_UNKNOWN;
    try {
        if (archive.Read(m_chunkId.data(), m_chunkId.size()) != m_chunkId.size()) {
            return false;
        }
        const std::string_view id(m_chunkId.data(), m_chunkId.size());
        if (id == HEADER_ID) {
            m_nKind = CHUNK_HEADER;
        } else if (id == TRACK_ID) {
            m_nKind = CHUNK_TRACK;
        } else {
            return false;
        }
        return ReadBigEndian(archive, m_nLength);
    } catch (const CFileException&) {
        return false;
    }
}

bool CMidiHeaderChunk::Serialize(CArchive& archive) {
    try {
        if (archive.IsLoading()) {
            return Load(archive);
        }
        Store(archive);
        return true;
    } catch (const CFileException&) {
        return false;
    }
}

bool CMidiHeaderChunk::Load(CArchive& archive) {
    m_nConsumed = 0;
    m_nOutputSize = 0;
    if (!ReadChunkHeader(archive) || m_nKind != CHUNK_HEADER || !ReadBigEndian(archive, m_nFormat) ||
        !ReadBigEndian(archive, m_nTrackCount) || !ReadBigEndian(archive, m_nDivision)) {
        return false;
    }
    m_nConsumed += HEADER_BYTES;
    m_nOutputSize += HEADER_BYTES;
    // A longer header is one of a later version of the format.
    for (BYTE nDropped = 0; m_nConsumed < m_nLength; ++m_nConsumed) {
        if (!ReadByte(archive, nDropped)) {
            return false;
        }
    }
    return true;
}

void CMidiHeaderChunk::Store(CArchive& archive) const {
    archive.Write(HEADER_ID.data(), HEADER_ID.size());
    WriteBigEndian(archive, m_nOutputSize);
    WriteBigEndian(archive, m_nFormat);
    WriteBigEndian(archive, m_nTrackCount);
    WriteBigEndian(archive, m_nDivision);
}
