#pragma once

#include "platform/base/Types.h"

// The grey into which the needle fades while no note is heard.
inline constexpr COLORREF CLR_FADED_NEEDLE = MakeColor(160, 160, 160);

// The needle's colour `fElapsed` milliseconds after the note stopped: the full colour for `fHold`
// milliseconds, then in a straight line to grey within `fLength` milliseconds, each channel truncated toward
// its start.
COLORREF FadeNeedleColor(COLORREF clrNeedle, float fElapsed, float fHold, float fLength);
