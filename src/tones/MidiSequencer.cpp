#include "tones/MidiSequencer.h"

#include "platform/base/Exceptions.h"
#include "platform/multimedia/MultimediaTimer.h"
#include "tones/MidiMetaEvent.h"

#include <algorithm>

CMidiSequencer* g_pSequencer = nullptr;

namespace {

constexpr DWORD SYSTEM_RESET = 0xFF;
constexpr WORD PORT_BIT = 1;
constexpr UINT TIMER_MILLISECONDS = TIMER_TICK / 1000;

}  // namespace

CMidiSequencer::CMidiSequencer() {
    if (g_pSequencer != nullptr) {
        throw CUserException();
    }
    midiOutPrepare();
    g_pSequencer = this;
}

CMidiSequencer::~CMidiSequencer() {
    StopTimer();
    Close();
    g_pSequencer = nullptr;
}

bool CMidiSequencer::Open(CMidiSong& song) {
    Close();
    m_pTracks = &song.GetTracks();
    m_nDivision = song.GetDivision();
    m_bOpen = OpenAnyDevice();
    if (!m_bOpen) {
        return false;
    }
    AddCursors();
    return true;
}

bool CMidiSequencer::OpenAnyDevice() {
    if (OpenDevice(0)) {
        return true;
    }
    // Looking for ports takes its time, and is only done where one is needed.
    const UINT nDevices = midiOutGetNumDevs();
    for (UINT uDeviceId = 0; uDeviceId < nDevices; ++uDeviceId) {
        MIDIOUTCAPS caps;
        if (midiOutGetDevCapsA(uDeviceId, caps) == MMSYSERR_NOERROR && (caps.wTechnology & PORT_BIT) != 0) {
            return OpenDevice(uDeviceId);
        }
    }
    return false;
}

bool CMidiSequencer::OpenDevice(UINT uDeviceId) {
    if (midiOutOpen(m_hMidiOut, uDeviceId, 0, 0, 0) != MMSYSERR_NOERROR) {
        return false;
    }
    // A device that doesn't tell its volume is not given one either.
    m_bVolumeSaved = midiOutGetVolume(m_hMidiOut, m_dwSavedVolume) == MMSYSERR_NOERROR;
    midiOutShortMsg(m_hMidiOut, SYSTEM_RESET);
    return true;
}

void CMidiSequencer::AddCursors() {
    m_pTracks->ResetIteration();
    while (const CMidiTrackChunk* const pTrack = m_pTracks->NextTrack()) {
        ++m_nTrackCount;
        m_cursors.push_back(std::make_unique<CMidiTrackCursor>(m_nTrackCount, pTrack->GetFirstEvent()));
    }
}

void CMidiSequencer::Close() {
    if (!m_bOpen) {
        return;
    }
    if (m_bVolumeSaved) {
        midiOutSetVolume(m_hMidiOut, m_dwSavedVolume);
    }
    midiOutClose(m_hMidiOut);
    m_hMidiOut = 0;
    m_bOpen = false;
    m_cursors.clear();
    m_nTrackCount = 0;
}

UINT CMidiSequencer::StartTimer() {
    StopTimer();
    if (m_bOpen && m_nTrackCount > 0) {
        for (const auto& pCursor : m_cursors) {
            PlayDue(*pCursor);
        }
    }
    TIMECAPS caps;
    MMRESULT result = timeGetDevCaps(caps);
    if (result != TIMERR_NOERROR) {
        return result;
    }
    m_uTimerPeriod = std::min(std::max(caps.wPeriodMin, 1U), caps.wPeriodMax);
    result = timeBeginPeriod(m_uTimerPeriod);
    if (result != TIMERR_NOERROR) {
        return result;
    }
    m_uTimerId = timeSetEvent(TIMER_MILLISECONDS, 0, TimerCallback, 0, TIME_PERIODIC);
    m_bTimerOn = m_uTimerId != 0;
    if (!m_bTimerOn) {
        timeEndPeriod(m_uTimerPeriod);
    }
    return m_uTimerId;
}

void CMidiSequencer::StopTimer() {
    if (m_bTimerOn) {
        timeKillEvent(m_uTimerId);
        timeEndPeriod(m_uTimerPeriod);
        m_bTimerOn = false;
    }
}

void CMidiSequencer::TimerCallback(UINT /*uTimerId*/, UINT /*uMessage*/, std::uintptr_t /*dwUser*/,
                                   std::uintptr_t /*dw1*/, std::uintptr_t /*dw2*/) {
    CMidiSequencer* const pSequencer = g_pSequencer;
    if (pSequencer == nullptr || !pSequencer->m_bOpen || pSequencer->m_nTrackCount == 0) {
        return;
    }
    for (const auto& pCursor : pSequencer->m_cursors) {
        if (!pCursor->IsDone()) {
            pCursor->Tick();
            pSequencer->PlayDue(*pCursor);
        }
    }
}

void CMidiSequencer::PlayDue(CMidiTrackCursor& cursor) {
    while (!cursor.IsDone() && Dispatch(cursor)) {
    }
}

bool CMidiSequencer::Dispatch(CMidiTrackCursor& cursor) {
    CMidiMessage message;
    if (!cursor.Take(message)) {
        return false;
    }
    if (message.m_nKind == MIDI_KIND_CHANNEL && m_bOpen) {
        midiOutShortMsg(m_hMidiOut, DWORD{message.m_nStatus} | DWORD{message.m_nData1} << 8 |
                                        DWORD{message.m_nData2} << 16);
    } else if (message.m_nKind == MIDI_KIND_META && message.m_nMetaType == META_SET_TEMPO) {
        SetTempo(cursor.GetEvent()->GetValue());
    }
    cursor.Advance();
    return true;
}

void CMidiSequencer::SetTempo(DWORD nUsPerQuarter) {
    // A song without a division has no time.
    if (m_nDivision == 0) {
        return;
    }
    g_nPrevUsPerTick = g_nUsPerTick;
    g_nUsPerTick = nUsPerQuarter / m_nDivision;
    for (const auto& pCursor : m_cursors) {
        pCursor->Rescale();
    }
}
