#include "fuzz/Require.h"
#include "platform/base/Archive.h"
#include "tones/MidiSong.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

void DumpAll(CMidiSong& song, CMemFile& file) {
    song.GetTracks().ResetIteration();
    while (const CMidiTrackChunk* const pTrack = song.GetTracks().NextTrack()) {
        for (const CMidiEvent* pEvent = pTrack->GetFirstEvent(); pEvent != nullptr;
             pEvent = pEvent->GetNext()) {
            pEvent->Dump(file);
        }
    }
}

}  // namespace

// Any bytes are a song or are refused; what could be read of them can be told and written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    std::vector<BYTE> bytes(pData, pData + nSize);
    CMemFile file{std::span<BYTE>(bytes)};
    CArchive loading(file, CArchive::Mode::Load, 16);
    CMidiSong song;
    song.Serialize(loading);
    CMemFile text;
    DumpAll(song, text);
    CMemFile written;
    CArchive storing(written, CArchive::Mode::Store);
    Require(song.Serialize(storing));
    return 0;
}
