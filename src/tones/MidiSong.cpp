#include "tones/MidiSong.h"

bool CMidiSong::Serialize(CArchive& archive) {
    const bool bHeader = m_header.Serialize(archive);
    const bool bTracks = m_tracks.Serialize(archive);
    return bHeader && bTracks;
}
