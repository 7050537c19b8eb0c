#include "platform/base/Archive.h"
#include "platform/base/Exceptions.h"
#include "platform/multimedia/MidiOutBackend.h"
#include "platform/multimedia/TimerBackend.h"
#include "tones/TonePlayer.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

class CTonePlayerAccess {
public:
    static std::vector<BYTE> ImageOf(const CTonePlayer& player, int nFrom = 0) {
        return {player.m_image.begin() + nFrom,
                player.m_image.begin() + static_cast<std::ptrdiff_t>(player.m_nImageBytes)};
    }
};

namespace {

using Sent = std::pair<int, DWORD>;  // tick and message

// It stands in for the timer, whose ticks the test makes, and for the MIDI system, and writes down what that
// is told, and when.
class TonePlayer : public testing::Test,
                   protected ITimerBackend,
                   protected IMidiOutBackend,
                   protected IMidiOutPort {
protected:
    void SetUp() override {
        g_nUsPerTick = 0;
        g_nPrevUsPerTick = 0;
        SetTimerBackend({std::shared_ptr<void>(), this});
        SetMidiOutBackend({std::shared_ptr<void>(), this});
    }
    void TearDown() override {
        EXPECT_EQ(m_nOpen, 0) << "a device was left open";
        EXPECT_EQ(m_nPeriods, 0) << "the timer's precision was not given back";
        SetTimerBackend(nullptr);
        SetMidiOutBackend(nullptr);
    }

    MMRESULT GetDevCaps(TIMECAPS& caps) override {
        caps = {1, 1000};
        return TIMERR_NOERROR;
    }
    MMRESULT BeginPeriod(UINT uPeriod) override {
        m_nPeriods += static_cast<int>(uPeriod);
        return TIMERR_NOERROR;
    }
    MMRESULT EndPeriod(UINT uPeriod) override {
        m_nPeriods -= static_cast<int>(uPeriod);
        return TIMERR_NOERROR;
    }
    UINT SetEvent(UINT uDelay, TimeProc pfnCallback, std::uintptr_t /*dwUser*/) override {
        EXPECT_EQ(uDelay, 5U);
        EXPECT_EQ(m_pfnCallback, nullptr) << "two timers at once";
        m_pfnCallback = pfnCallback;
        return 7;
    }
    MMRESULT KillEvent(UINT uTimerId) override {
        EXPECT_EQ(uTimerId, 7U);
        m_pfnCallback = nullptr;
        m_nTick = 0;
        return TIMERR_NOERROR;
    }

    UINT GetNumDevs() override { return static_cast<UINT>(m_technologies.size()); }
    MMRESULT GetDevCaps(UINT uDeviceId, MIDIOUTCAPS& caps) override {
        caps.wTechnology = m_technologies.at(uDeviceId);
        return MMSYSERR_NOERROR;
    }
    MMRESULT Open(UINT uDeviceId, std::shared_ptr<IMidiOutPort>& pPort) override {
        if (uDeviceId >= m_technologies.size() || (uDeviceId == 0 && m_bFirstRefuses)) {
            return MMSYSERR_NODRIVER;
        }
        EXPECT_EQ(m_nOpen, 0) << "two devices at once";
        ++m_nOpen;
        m_opened.push_back(uDeviceId);
        pPort = {std::shared_ptr<void>(), this};
        return MMSYSERR_NOERROR;
    }
    MMRESULT ShortMsg(DWORD dwMessage) override {
        m_sent.emplace_back(m_nTick, dwMessage);
        return MMSYSERR_NOERROR;
    }
    MMRESULT GetVolume(DWORD& dwVolume) override {
        dwVolume = 0x12345678;
        return MMSYSERR_NOERROR;
    }
    MMRESULT SetVolume(DWORD dwVolume) override {
        EXPECT_EQ(dwVolume, 0x12345678U);
        ++m_nVolumesSet;
        return MMSYSERR_NOERROR;
    }
    MMRESULT Close() override {
        --m_nOpen;
        return MMSYSERR_NOERROR;
    }

    void Tick(int nTicks) {
        for (int i = 0; i < nTicks && m_pfnCallback != nullptr; ++i) {
            ++m_nTick;
            m_pfnCallback(7, 0, 0, 0, 0);
        }
    }

    TimeProc m_pfnCallback = nullptr;
    int m_nTick = 0;
    int m_nPeriods = 0;
    std::vector<WORD> m_technologies = {MOD_SYNTH};
    bool m_bFirstRefuses = false;
    std::vector<UINT> m_opened;
    std::vector<Sent> m_sent;
    int m_nVolumesSet = 0;
    int m_nOpen = 0;
};

void LoadSong(CMidiSong& song, std::vector<BYTE> image) {
    CMemFile file{std::span<BYTE>(image)};
    CArchive archive(file, CArchive::Mode::Load);
    EXPECT_TRUE(song.Serialize(archive));
}

// One string sounds for 160 ticks of 5 ms, all follow each other every 36. The bend stops at a semitone.
TEST_F(TonePlayer, TonesHaveTheirLengthAndTheBendOfTheAFrequency) {
    struct Bend {
        float fA;
        DWORD dwOne;
        DWORD dwAll;
    };
    for (const Bend& bend : {Bend{300.0F, 0x2004E0, 0x0000E0}, Bend{430.0F, 0x3321E0, 0x131DE0},
                             Bend{440.0F, 0x4004E0, 0x2000E0}, Bend{450.0F, 0x4C38E0, 0x2C34E0},
                             Bend{500.0F, 0x6004E0, 0x4000E0}}) {
        SCOPED_TRACE(bend.fA);
        CTonePlayer player;
        player.SetAFrequency(bend.fA);
        m_sent.clear();
        player.PlayString(40, 127);
        Tick(1000);
        EXPECT_EQ(
            m_sent,
            (std::vector<Sent>{
                {0, 0xFF}, {0, 0x18C0}, {0, bend.dwOne}, {0, 0x7F2890}, {160, 0x002890}, {160, 0x00F8B0}}));
        m_sent.clear();
        player.PlayAllStrings(41, 46, 51, 56, 60, 65, 127);
        Tick(1000);
        std::vector<Sent> expected = {{0, 0xFF}, {0, 0x18C0}, {0, bend.dwAll}};
        int nTick = 0;
        for (const DWORD dwNote : {41U, 46U, 51U, 56U, 60U, 65U}) {
            expected.emplace_back(nTick, 0x7F0090U | dwNote << 8);
            nTick += 36;
            expected.emplace_back(nTick, 0x90U | dwNote << 8);
        }
        expected.emplace_back(nTick, 0x00F8B0);
        EXPECT_EQ(m_sent, expected);
    }
}

// Behind the first track, which is a template.
TEST_F(TonePlayer, TheSecondTrackIsWrittenByteForByte) {
    CTonePlayer player;
    player.PlayString(127, 127);
    EXPECT_EQ(CTonePlayerAccess::ImageOf(player)[21], 0x91) << "the length of the first";
    EXPECT_EQ(CTonePlayerAccess::ImageOf(player, 171),
              std::vector<BYTE>({0,   0,   0,  22,  0, 0xC0, 0x18, 0,    0xE0, 4, 64,   0,    0x90,
                                 127, 127, 80, 127, 0, 0,    0xB0, 0xF8, 0,    0, 0xFF, 0x2F, 0}));
    player.PlayAllStrings(1, 2, 3, 4, 5, 6, 10);
    EXPECT_EQ(CTonePlayerAccess::ImageOf(player, 171),
              std::vector<BYTE>({0,  0,  0,  52, 0,  0xC0, 0x18, 0,    0xE0, 0, 0x20, 0,    0x90, 1,
                                 65, 18, 1,  0,  0,  2,    65,   18,   2,    0, 0,    3,    65,   18,
                                 3,  0,  0,  4,  64, 18,   4,    0,    0,    5, 64,   18,   5,    0,
                                 0,  6,  64, 18, 6,  0,    0,    0xB0, 0xF8, 0, 0,    0xFF, 0x2F, 0}));
}

// Eight times the tempo slows for a quarter note; the last time it ends faster than it was.
TEST_F(TonePlayer, TheFirstTrackHoldsItsTempos) {
    using Tempo = std::pair<DWORD, DWORD>;  // tick and microseconds per quarter note
    std::vector<Tempo> expected = {{0, 1200000}};
    for (const auto& [nTick, nTempo] :
         {Tempo{840, 1333333}, Tempo{1800, 1333333}, Tempo{2760, 1333333}, Tempo{5640, 1500000},
          Tempo{8520, 1333333}, Tempo{10440, 1500000}, Tempo{13320, 1333333}, Tempo{15240, 1500000}}) {
        expected.insert(expected.end(), {{nTick, nTempo}, {nTick + 120, 1200000}});
    }
    expected.back().second = 1000000;
    CTonePlayer player;
    player.PlayString(40, 127);
    CMidiSong song;
    LoadSong(song, CTonePlayerAccess::ImageOf(player));
    song.GetTracks().ResetIteration();
    std::vector<Tempo> tempos;
    DWORD nTick = 0;
    for (const auto* p = song.GetTracks().NextTrack()->GetFirstEvent(); p != nullptr; p = p->GetNext()) {
        nTick += p->GetDelta();
        if (p->GetKind() == 2) {
            tempos.emplace_back(nTick, p->GetValue());
        }
    }
    EXPECT_EQ(tempos, expected);
    EXPECT_EQ(song.GetTracks().GetCount(), 2);
}

TEST_F(TonePlayer, EarlyEventsDoNotAddUpAndWaitsKeepTheirPartOfTheTempo) {
    // 7 ms a tick of the song, 14 ms from the tenth on. Three tracks: the tempos, notes at every tick, a long
    // wait. Nothing waits for a tempo that is not known yet: the first notes sound at once.
    std::vector<BYTE> image = {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, 3, 0, 120};
    const std::vector<std::vector<BYTE>> tracks = {
        {0, 0xFF, 0x51, 3, 0x0C, 0xD1, 0x40, 10, 0xFF, 0x51, 3, 0x19, 0xA2, 0x80},
        {1, 0x90, 1, 9, 1, 2, 9, 1, 3, 9, 1, 4, 9, 1, 5, 9, 1, 6, 9},
        {0, 0x91, 7, 9, 20, 8, 9}};
    for (const auto& track : tracks) {
        image.insert(image.end(), {'M', 'T', 'r', 'k', 0, 0, 0, static_cast<BYTE>(track.size())});
        image.insert(image.end(), track.begin(), track.end());
    }
    CMidiSong song;
    LoadSong(song, image);
    CMidiSequencer sequencer;
    ASSERT_TRUE(sequencer.Open(song));
    sequencer.StartTimer();
    Tick(100);
    sequencer.StopTimer();
    // By the clock a note is due at 7, 14, 21... ms, and sounds at the tick of 5 ms before. The long wait has
    // 75 of its 140 ms left when the tempo is halved, in the fourteenth tick: 150 more from there.
    const std::vector<Sent> expected = {{0, 0xFF},     {0, 0x090190}, {0, 0x090791},
                                        {1, 0x090290}, {2, 0x090390}, {4, 0x090490},
                                        {5, 0x090590}, {7, 0x090690}, {43, 0x090891}};
    EXPECT_EQ(m_sent, expected);
    // Opened while it is open it begins anew.
    for (const int nTicks : {1, 200}) {
        m_sent.clear();
        EXPECT_TRUE(sequencer.Open(song));
        sequencer.StartTimer();
        Tick(nTicks);
        sequencer.StopTimer();
    }
    EXPECT_EQ(m_sent.size(), expected.size());
    EXPECT_EQ(m_nVolumesSet, 2);
}

// Also after the tempo has changed, at the song's tick 840.
TEST_F(TonePlayer, ASecondToneEndsTheFirstWithoutANoteOffAndIsAsLong) {
    CTonePlayer player;
    player.PlayString(40, 127);
    Tick(50);
    m_sent.clear();
    player.PlayString(45, 127);
    EXPECT_EQ(m_nVolumesSet, 1);
    Tick(8400 / 5 + 1);
    const std::vector<Sent> expected = {{0, 0xFF},     {0, 0x18C0},     {0, 0x4004E0},
                                        {0, 0x7F2D90}, {160, 0x002D90}, {160, 0x00F8B0}};
    EXPECT_EQ(m_sent, expected);
    EXPECT_EQ(g_nUsPerTick, 11111U);
    m_sent.clear();
    player.PlayString(45, 127);
    Tick(200);
    EXPECT_EQ(m_sent, expected);
}

TEST_F(TonePlayer, TakesAPortWhereDeviceZeroRefusesAndIsSilentWithoutAny) {
    m_bFirstRefuses = true;
    m_technologies = {MOD_SYNTH, MOD_FMSYNTH, MOD_MIDIPORT, MOD_MIDIPORT};
    CTonePlayer player;
    player.PlayString(40, 127);
    EXPECT_EQ(m_opened, std::vector<UINT>({2}));
    m_technologies = {MOD_SYNTH};
    m_sent.clear();
    player.PlayString(40, 127);
    EXPECT_NE(m_pfnCallback, nullptr) << "the timer runs all the same";
    Tick(200);
    EXPECT_TRUE(m_sent.empty());
}

TEST_F(TonePlayer, ThereIsOneSequencer) {
    const CTonePlayer player;
    EXPECT_THROW(CMidiSequencer(), CUserException);
}

}  // namespace
