#pragma once

#include "platform/base/Types.h"
#include "platform/multimedia/MidiOut.h"
#include "tones/MidiSong.h"
#include "tones/MidiTrackCursor.h"

#include <cstdint>
#include <memory>
#include <vector>

// Plays a song on a MIDI output, from a periodic timer. There is one in the program.
//
// Two threads come here and never meet: the caller's, in all operations, and the timer's, between StartTimer
// and StopTimer, in the callback. So the song and the device may change only while the timer is stopped.
class CMidiSequencer {
public:
    // Throws CUserException if there is a sequencer already.
    CMidiSequencer();
    virtual ~CMidiSequencer();
    CMidiSequencer(const CMidiSequencer&) = delete;
    CMidiSequencer& operator=(const CMidiSequencer&) = delete;

    // Opens device 0, or else the first that is a port, resets it, and sets a cursor on each track of the
    // song, which must stay as it is until Close. False when no device can be opened.
    bool Open(CMidiSong& song);
    // Gives the device its volume back and lets it go.
    void Close();
    // Plays what is due at once, on the calling thread, and starts the timer. Gives the timer's id or, when
    // the platform refuses, its result.
    UINT StartTimer();
    // Returns when no tick runs and none will. Harmless when no timer runs.
    void StopTimer();

private:
    static void TimerCallback(UINT uTimerId, UINT uMessage, std::uintptr_t dwUser, std::uintptr_t dw1,
                              std::uintptr_t dw2);
    bool OpenDevice(UINT uDeviceId);
    bool OpenAnyDevice();
    void AddCursors();
    void PlayDue(CMidiTrackCursor& cursor);
    // Plays one event if it is due.
    bool Dispatch(CMidiTrackCursor& cursor);
    void SetTempo(DWORD nUsPerQuarter);

    CMidiTrackList* m_pTracks = nullptr;  // the song's
    HMIDIOUT m_hMidiOut = 0;
    bool m_bOpen = false;
    bool m_bTimerOn = false;
    WORD m_nDivision = 0;  // ticks of the song per quarter note
    UINT m_uTimerId = 0;
    UINT m_uTimerPeriod = 0;  // what timeBeginPeriod was given
    DWORD m_dwSavedVolume = 0;
    bool m_bVolumeSaved = false;
    std::vector<std::unique_ptr<CMidiTrackCursor>> m_cursors;  // in track order
    int m_nTrackCount = 0;
};

// The one sequencer.
extern CMidiSequencer* g_pSequencer;
