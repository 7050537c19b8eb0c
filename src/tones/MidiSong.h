#pragma once

#include "tones/MidiTrackList.h"

// A Standard MIDI File in memory.
class CMidiSong {
public:
    CMidiSong() = default;
    virtual ~CMidiSong() = default;
    CMidiSong(const CMidiSong&) = delete;
    CMidiSong& operator=(const CMidiSong&) = delete;

    // In the archive's direction. Loading never reads past the source; false if that is not a whole song, and
    // what could be read of it stays usable.
    bool Serialize(CArchive& archive);
    // Deletes all tracks; the header keeps its values.
    void Clear() { m_tracks.Clear(); }
    WORD GetDivision() const { return m_header.GetDivision(); }
    CMidiTrackList& GetTracks() { return m_tracks; }

private:
    CMidiHeaderChunk m_header;
    CMidiTrackList m_tracks;
};
