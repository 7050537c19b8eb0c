#pragma once

#include "platform/base/Types.h"

// Milliseconds of the monotonic clock, counted from a point two minutes before the program's start: never
// near zero, so that a moment long past can be told, and small enough that a float holds it to the
// millisecond for hours. Wraps after 49 days. Any thread.
DWORD timeGetTime();
