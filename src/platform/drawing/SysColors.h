#pragma once

#include "platform/base/Types.h"

inline constexpr int COLOR_WINDOW = 5;
inline constexpr int COLOR_WINDOWTEXT = 8;
inline constexpr int COLOR_HIGHLIGHT = 13;
inline constexpr int COLOR_HIGHLIGHTTEXT = 14;
inline constexpr int COLOR_BTNFACE = 15;
inline constexpr int COLOR_BTNSHADOW = 16;
inline constexpr int COLOR_GRAYTEXT = 17;
inline constexpr int COLOR_BTNTEXT = 18;
inline constexpr int COLOR_BTNHILIGHT = 20;
inline constexpr int COLOR_3DDKSHADOW = 21;
inline constexpr int COLOR_3DLIGHT = 22;

// The colours of the desktop, one table for the program; the windows feed it from the toolkit's palette,
// until then it holds the classic greys. Any thread. An index outside 0 to 30 reads as 0 and is not stored.
COLORREF GetSysColor(int nIndex);
void SetSysColor(int nIndex, COLORREF clr);
