#pragma once

#include <condition_variable>
#include <mutex>

// An auto-reset event: Set lets exactly one wait through, now or later, and any number of Sets before that
// wait count as one. Every operation may be called from any thread; the lock inside is held for a few
// instructions.
class CEvent {
public:
    // Returns at once; the waiting thread, if there is one, wakes.
    void SetEvent();
    void ResetEvent();
    // True when the event was set (and is reset by that), false when the time ran out. 0 only looks.
    bool Wait(int nMilliseconds);

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_bSet = false;
};
