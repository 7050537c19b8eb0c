#pragma once

#include "platform/base/Types.h"

#include <cstdint>

// The frames-per-second text is made anew when more than this many milliseconds have gone by.
inline constexpr DWORD FRAME_RATE_PERIOD = 1000;

// Whether the period that began at dwStart is over; right also where the clock has wrapped round in it.
constexpr bool IsFrameRateDue(DWORD dwStart, DWORD dwNow) {
    return dwNow - dwStart > FRAME_RATE_PERIOD;
}

// The text for nFrames frames in dwElapsed milliseconds (not 0).
CString FormatFrameRate(std::int64_t nFrames, DWORD dwElapsed);
