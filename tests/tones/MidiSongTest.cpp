#include "platform/base/Archive.h"
#include "platform/base/Exceptions.h"
#include "tones/MidiBytes.h"
#include "tones/MidiSong.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using Bytes = std::vector<BYTE>;

Bytes Concat(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

const Bytes HEADER = {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, 2, 0, 120};

Bytes Track(const Bytes& body, int nLength = -1) {
    const auto n = static_cast<BYTE>(nLength < 0 ? static_cast<int>(body.size()) : nLength);
    return Concat({{'M', 'T', 'r', 'k', 0, 0, 0, n}, body});
}

bool Load(CMidiSong& song, Bytes bytes, std::size_t nBuffer = 4096) {
    CMemFile file{std::span<BYTE>(bytes)};
    CArchive archive(file, CArchive::Mode::Load, nBuffer);
    return song.Serialize(archive);
}

CMidiTrackChunk* FirstTrack(CMidiSong& song) {
    song.GetTracks().ResetIteration();
    return song.GetTracks().NextTrack();
}

const Bytes RUNNING = {0x00, 0x90, 0x28, 0x7F, 0x50, 0x28, 0x00};

TEST(MidiSong, RunningStatusMakesANoteOnWithoutAByteOfItsOwn) {
    for (const std::size_t nBuffer : {1U, 2U, 3U, 4096U}) {
        CMidiSong song;
        ASSERT_TRUE(Load(song, Concat({HEADER, Track(RUNNING)}), nBuffer)) << nBuffer;
        EXPECT_EQ(song.GetDivision(), 120);
        const auto* pTrack = FirstTrack(song);
        EXPECT_EQ(song.GetTracks().NextTrack(), nullptr);
        EXPECT_EQ(song.GetTracks().NextTrack(), nullptr);
        const auto* pSecond = pTrack->GetFirstEvent()->GetNext();
        CMidiMessage message;
        pSecond->GetMessage(message);
        EXPECT_EQ(message.m_nKind, MIDI_KIND_CHANNEL);
        EXPECT_EQ(message.m_nDelta, 80U);
        EXPECT_EQ(message.m_nStatus, 0x90);
        EXPECT_EQ(message.m_nData1, 0x28);
        EXPECT_EQ(message.m_nData2, 0);
        EXPECT_EQ(pSecond->GetNext(), nullptr);
    }
}

TEST(MidiSong, WhatIsWrittenBackLeavesSuperfluousStatusBytesOut) {
    CMidiSong song;
    const Bytes twice = {0x00, 0x90, 0x28, 0x7F, 0x50, 0x90, 0x28, 0x00, 0x00, 0xFF, 0x2F, 0x00};
    const Bytes once = {0x00, 0x90, 0x28, 0x7F, 0x50, 0x28, 0x00, 0x00, 0xFF, 0x2F, 0x00};
    ASSERT_TRUE(Load(song, Concat({HEADER, Track(twice)})));
    CMemFile file;
    CArchive archive(file, CArchive::Mode::Store);
    ASSERT_TRUE(song.Serialize(archive));
    EXPECT_EQ(Bytes(file.GetBytes().begin(), file.GetBytes().end()), Concat({HEADER, Track(once)}));
}

// Each event stands behind a delta of nought.
TEST(MidiSong, EventsTellTheirKindTheirValueAndWhatTheyAre) {
    struct Case {
        Bytes event;
        int nKind;
        DWORD nValue;
        CString strDump;
    };
    for (const Case& event :
         {Case{{0xFF, 0x51, 3, 0x12, 0x4F, 0x80}, 2, 0x124F80, "Meta 51 Set tempo        1200000"},
          Case{{0xFF, 0x51, 2, 1, 2}, 2, 0, "Meta 51 Set tempo        0"},
          Case{{0xFF, 0x58, 4, 6, 3, 0x18, 8}, 3, 0x08180806, "Meta 58 Time signature   6:8  24 8"},
          Case{{0xFF, 0x58, 1, 4}, 3, 0, "Meta 58 Time signature   0:0  0 0"},
          Case{{0xFF, 0x59, 2, 2, 1}, 4, 0x201, "Meta 59 Key signature    "},
          Case{{0xFF, 0x03, 2, 'A', 'b'}, 1, 0, "Meta 03 Track name       Ab"},
          Case{{0xFF, 0x60, 0}, 0, 0, "Meta 60 Unknown          "}, Case{{0xF0, 1, 0xF7}, 0, 0, "Sysex"},
          Case{{0xC0, 0x18}, 0, 0, "Midi C0 Program change   18"},
          Case{{0xE0, 4, 64}, 0, 0, "Midi E0 Pitch bend       04 40"}}) {
        SCOPED_TRACE(event.strDump);
        CMidiSong song;
        ASSERT_TRUE(Load(song, Concat({HEADER, Track(Concat({{0}, event.event}))})));
        const auto* pEvent = FirstTrack(song)->GetFirstEvent();
        EXPECT_EQ(pEvent->GetKind(), event.nKind);
        EXPECT_EQ(pEvent->GetValue(), event.nValue);
        CMemFile file;
        pEvent->Dump(file);
        EXPECT_EQ(CString(file.GetBytes().begin(), file.GetBytes().end()), event.strDump + "\n");
    }
}

TEST(MidiSong, WhatIsWrongEndsTheTracksAndIsTold) {
    const Bytes longer = {'M', 'T', 'h', 'd', 0, 0, 0, 8, 0, 1, 0, 2, 0, 120, 9, 9};
    const Bytes longest = {'M', 'T', 'h', 'd', 0xFF, 0xFF, 0xFF, 0xFF, 0, 1, 0, 2, 0, 120};
    const Bytes unknown = {'X', 'Y', 'Z', '!', 0, 0, 0, 0};
    struct Case {
        const char* szWhat;
        Bytes file;
        bool bLoads;
        int nTracks;
    };
    for (const Case& file :
         {Case{"a longer header", Concat({longer, Track(RUNNING), Track(RUNNING)}), true, 2},
          Case{"a length that ends inside the last event",
               Concat({HEADER, Track(RUNNING, 5), Track(RUNNING)}), true, 2},
          Case{"a header of 4 GB", longest, false, 0},
          Case{"an unknown chunk", Concat({HEADER, Track(RUNNING), unknown, Track(RUNNING)}), false, 1},
          Case{"65535, a failure also where it was read",
               Concat({HEADER, Track({0x83, 0xFF, 0x7F, 0xC1, 5})}), false, 0},
          Case{"no status to run on", Concat({HEADER, Track({0, 0x28, 0x7F})}), false, 0},
          Case{"2 MiB of text", Concat({HEADER, Track({0, 0xFF, 1, 0xFF, 0xFF, 0x7E, 'x'})}), false, 1}}) {
        SCOPED_TRACE(file.szWhat);
        CMidiSong song;
        EXPECT_EQ(Load(song, file.file), file.bLoads);
        EXPECT_EQ(song.GetTracks().GetCount(), file.nTracks);
    }
}

TEST(MidiSong, AQuantityHasThreeBytesAtMost) {
    CMidiSong song;
    // The fourth byte becomes the status: a program change.
    ASSERT_TRUE(Load(song, Concat({HEADER, Track({0x81, 0x80, 0x80, 0xC1, 0x05})})));
    const auto* pEvent = FirstTrack(song)->GetFirstEvent();
    EXPECT_EQ(pEvent->GetDelta(), 1U << 14);
    EXPECT_EQ(pEvent->GetStatus(), 0xC1);
}

TEST(MidiSong, EveryTruncationIsRefusedAndKeepsWhatItRead) {
    const Bytes whole =
        Concat({HEADER, Track({0, 0xFF, 0x51, 3, 1, 2, 3, 0, 0xF0, 2, 1, 2, 0, 0x90, 40, 127, 80, 40, 0})});
    CMidiSong song;
    ASSERT_TRUE(Load(song, whole));
    for (std::size_t n = 0; n < whole.size(); ++n) {
        if (n == HEADER.size()) {
            continue;  // a song without tracks is one
        }
        EXPECT_FALSE(Load(song, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)))) << n;
    }
    EXPECT_EQ(song.GetTracks().GetCount(), 1) << "what was read before the last byte stays";
}

TEST(MidiSong, QuantitiesAreWrittenInAsFewBytesAsTheyNeed) {
    CMemFile file;
    CArchive archive(file, CArchive::Mode::Store);
    for (const DWORD nValue : {0U, 0x7FU, 0x80U, 840U, 0x0FFFFFFFU}) {
        WriteVarLen(archive, nValue);
    }
    EXPECT_EQ(Bytes(file.GetBytes().begin(), file.GetBytes().end()),
              Bytes({0, 0x7F, 0x81, 0, 0x86, 0x48, 0xFF, 0xFF, 0xFF, 0x7F}));
}

class CFailingFile final : public CFile {
public:
    std::size_t Read(void* /*pBuffer*/, std::size_t /*nCount*/) override { throw CFileException(); }
    void Write(const void* /*pBuffer*/, std::size_t /*nCount*/) override { throw CFileException(); }
};

TEST(MidiSong, AFailingFileIsAFalseResult) {
    CFailingFile file;
    CMidiSong song;
    CArchive loading(file, CArchive::Mode::Load);
    EXPECT_FALSE(song.Serialize(loading));
    ASSERT_TRUE(Load(song, Concat({HEADER, Track(RUNNING)})));
    CArchive storing(file, CArchive::Mode::Store);
    EXPECT_FALSE(song.Serialize(storing));
    // A file of a bounded size that is too small.
    Bytes room(28);
    CMemFile small{std::span<BYTE>(room)};
    CArchive archive(small, CArchive::Mode::Store);
    EXPECT_FALSE(song.Serialize(archive));
}

}  // namespace
