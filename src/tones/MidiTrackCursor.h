#pragma once

#include "platform/base/Types.h"
#include "tones/MidiEvent.h"

// Microseconds of one tick of the sequencer's timer.
inline constexpr DWORD TIMER_TICK = 5000;

// The clock of the song that plays: microseconds of one tick of the song, now and before the latest change of
// tempo; 0 before the first. Held once, and kept from one song to the next. Touched by the thread that starts
// the timer, before it starts, and by the timer's thread while it runs.
extern DWORD g_nUsPerTick;
extern DWORD g_nPrevUsPerTick;

// A place in one track: the next event, and how long until it is due.
class CMidiTrackCursor {
public:
    // The track is counted from 1. Without a first event the cursor is done at once.
    CMidiTrackCursor(int nTrack, const CMidiEvent* pFirstEvent);
    virtual ~CMidiTrackCursor() = default;
    CMidiTrackCursor(const CMidiTrackCursor&) = delete;
    CMidiTrackCursor& operator=(const CMidiTrackCursor&) = delete;

    // True and the event's message, once the event is due; Advance then goes on to the next.
    bool Take(CMidiMessage& message);
    void Advance();
    // One tick of the timer has passed.
    void Tick();
    // The tempo has changed: what is left of the wait takes as many ticks of the song as before.
    void Rescale();
    bool IsDone() const { return m_bDone; }
    const CMidiEvent* GetEvent() const { return m_pEvent; }

private:
    void StartWait();

    int m_nTrack;
    const CMidiEvent* m_pEvent;  // of the song; null at the end
    DWORD m_nRemaining = 0;      // microseconds until the event is due
    bool m_bDone = false;
    DWORD m_nCarry =
        0;  // microseconds by which the last events came early; the next wait is that much longer
};
