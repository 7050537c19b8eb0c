#pragma once

// Widths of a window's parts, in pixels. The desktop draws frames as it likes; these are the ones that
// CWnd::CalcWindowRect and CWnd::GetWindowRect reckon with, so that a client area can be found from either.
inline constexpr int SM_CYCAPTION = 4;
inline constexpr int SM_CXFIXEDFRAME = 7;
inline constexpr int SM_CYFIXEDFRAME = 8;
inline constexpr int SM_CYMENU = 15;

// The width in question; 0 for an unknown index.
int GetSystemMetrics(int nIndex);
