#pragma once

#include "platform/multimedia/MultimediaTimer.h"

#include <cstdint>
#include <memory>

// What stands behind the functions of MultimediaTimer.h.
class ITimerBackend {
public:
    virtual ~ITimerBackend() = default;
    virtual MMRESULT GetDevCaps(TIMECAPS& caps) = 0;
    virtual MMRESULT BeginPeriod(UINT uPeriod) = 0;
    virtual MMRESULT EndPeriod(UINT uPeriod) = 0;
    virtual UINT SetEvent(UINT uDelay, TimeProc pfnCallback, std::uintptr_t dwUser) = 0;
    virtual MMRESULT KillEvent(UINT uTimerId) = 0;

    ITimerBackend(const ITimerBackend&) = delete;
    ITimerBackend& operator=(const ITimerBackend&) = delete;

protected:
    ITimerBackend() = default;
};

// Puts a backend in place of the present one and gives that back; null stands for the system's clock. Not
// while a timer runs.
std::shared_ptr<ITimerBackend> SetTimerBackend(std::shared_ptr<ITimerBackend> pBackend);
