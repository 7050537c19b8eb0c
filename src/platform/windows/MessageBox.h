#pragma once

#include "platform/base/Types.h"

class CWnd;

inline constexpr UINT MB_OK = 0x00;
inline constexpr UINT MB_ICONEXCLAMATION = 0x30;

// A modal box with a text and an OK button; returns IDOK when it is closed, whichever way. pOwner may be
// null, or without a window yet. When the owner's window goes while the box is open, the box goes with it.
int MessageBox(CWnd* pOwner, const CString& strText, const CString& strCaption, UINT nType);
