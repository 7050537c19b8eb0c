#include "fuzz/Require.h"
#include "platform/base/Archive.h"
#include "tones/MidiSong.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// Each event as people read it, and as the sequencer does.
void TellAll(CMidiSong& song) {
    CMemFile text;
    CMidiMessage message;
    CString strText;
    song.GetTracks().ResetIteration();
    while (const CMidiTrackChunk* const pTrack = song.GetTracks().NextTrack()) {
        for (const CMidiEvent* pEvent = pTrack->GetFirstEvent(); pEvent != nullptr;
             pEvent = pEvent->GetNext()) {
            pEvent->Dump(text);
            pEvent->GetName(strText);
            pEvent->GetText(strText);
            pEvent->GetMessage(message);
            Require(message.m_nDataLength >= 0 && (message.m_nDataLength == 0) == !message.m_pData);
            Require(pEvent->GetKind() >= 0 && pEvent->GetKind() <= 4);
        }
    }
}

bool Load(CMidiSong& song, std::vector<BYTE> bytes) {
    CMemFile file{std::span<BYTE>(bytes)};
    CArchive archive(file, CArchive::Mode::Load, 16);
    return song.Serialize(archive);
}

// In the form of a file.
std::vector<BYTE> Store(CMidiSong& song) {
    CMemFile file;
    CArchive archive(file, CArchive::Mode::Store);
    Require(song.Serialize(archive));
    return {file.GetBytes().begin(), file.GetBytes().end()};
}

}  // namespace

// Any bytes are a song or are refused; what could be read of them can be told, written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    CMidiSong song;
    Load(song, {pData, pData + nSize});
    TellAll(song);
    CMidiSong again;
    Load(again, Store(song));
    TellAll(again);
    return 0;
}
