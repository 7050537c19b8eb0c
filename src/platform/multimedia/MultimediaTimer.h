#pragma once

#include "platform/base/Types.h"
#include "platform/multimedia/MmResult.h"

#include <cstdint>

// Periodic calls on a thread of their own. What stands behind them is the current ITimerBackend
// (TimerBackend.h).

inline constexpr MMRESULT TIMERR_NOERROR = 0;
inline constexpr MMRESULT TIMERR_NOCANDO = 97;
inline constexpr UINT TIME_PERIODIC = 1;

// Milliseconds.
struct TIMECAPS {
    UINT wPeriodMin = 0;
    UINT wPeriodMax = 0;
};

using TimeProc = void (*)(UINT uTimerId, UINT uMessage, std::uintptr_t dwUser, std::uintptr_t dw1,
                          std::uintptr_t dw2);

MMRESULT timeGetDevCaps(TIMECAPS& caps);
// Asks for this precision, until timeEndPeriod gives it back.
MMRESULT timeBeginPeriod(UINT uPeriod);
MMRESULT timeEndPeriod(UINT uPeriod);
// Calls pfnCallback every uDelay milliseconds, counted from now by the monotonic clock. Ticks that are late
// by up to a tenth of a second are made up for, those that are later are left out. The resolution is not
// looked at; the only kind is TIME_PERIODIC. Gives the timer's id, 0 on failure.
UINT timeSetEvent(UINT uDelay, UINT uResolution, TimeProc pfnCallback, std::uintptr_t dwUser, UINT uKind);
// When it returns no tick runs and none will; only from inside a tick, that tick itself goes on. Once for
// each id: a second call finds nothing, and waits for nothing.
MMRESULT timeKillEvent(UINT uTimerId);
