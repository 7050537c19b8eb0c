#pragma once

#include "tones/MidiTrackChunk.h"

#include <memory>
#include <vector>

// The tracks of a song, which it owns, and one position in them.
class CMidiTrackList {
public:
    CMidiTrackList() = default;
    virtual ~CMidiTrackList();
    CMidiTrackList(const CMidiTrackList&) = delete;
    CMidiTrackList& operator=(const CMidiTrackList&) = delete;

    // In the archive's direction. Loading reads tracks until the source gives no further one and keeps those
    // that it could read; true if they were whole and the source ended behind them.
    bool Serialize(CArchive& archive);
    void Clear();
    int GetCount() const { return m_nCount; }
    void ResetIteration() { m_pIter = m_head.GetNext(); }
    // The track at the position, which moves on; null at the end.
    CMidiTrackChunk* NextTrack();

private:
    bool Load(CArchive& archive);
    bool Store(CArchive& archive);

    CMidiTrackChunk m_head{0};
    CMidiTrackChunk* m_pIter = nullptr;
    int m_nCount = 0;
    std::vector<std::unique_ptr<CMidiTrackChunk>> m_chunks;  // what the list links
};
