#pragma once

#include "platform/base/Archive.h"
#include "platform/base/Types.h"
#include "tones/MidiObject.h"

#include <array>

inline constexpr int CHUNK_UNKNOWN = 0;
inline constexpr int CHUNK_HEADER = 1;
inline constexpr int CHUNK_TRACK = 2;

// A part of the file: four characters, a length, a body.
class CMidiChunk : public CMidiObject {
protected:
    // Reads id and length. False when they ran out, the file failed, or the id is none that we know.
    bool ReadChunkHeader(CArchive& archive);

    int m_nKind = CHUNK_UNKNOWN;
    std::array<char, 4> m_chunkId{};
    DWORD m_nLength = 0;
    DWORD m_nConsumed = 0;  // bytes of the body taken so far; kept for the header chunk
    // Length of the body when it is written back: the bytes read, less each status that running status makes
    // superfluous.
    DWORD m_nOutputSize = 0;
};

class CMidiHeaderChunk final : public CMidiChunk {
public:
    // In the archive's direction. False when the header can't be read or written.
    bool Serialize(CArchive& archive);
    // Ticks per quarter note.
    WORD GetDivision() const { return m_nDivision; }

private:
    bool Load(CArchive& archive);
    void Store(CArchive& archive) const;

    WORD m_nFormat = 0;
    WORD m_nTrackCount = 0;
    WORD m_nDivision = 0;
};
