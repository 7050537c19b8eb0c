#pragma once

#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"

// The two ways to a picture in memory: a bitmap that stays selected in its context for both their lives.
// dcScreen is a client device context; it is only asked for its form, so that no lock is wanted.

// From a BMP file in the current directory. False if the device can't copy rectangles or the file can't be
// loaded; then drawing from dc draws nothing.
bool LoadMemoryPicture(const CDC& dcScreen, const CString& strFile, CDC& dc, CBitmap& bitmap);

// Black, of the given size. False if the device or the size is of no use.
bool CreateMemoryPicture(const CDC& dcScreen, int cx, int cy, CDC& dc, CBitmap& bitmap);
