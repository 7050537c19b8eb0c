#include "widgets/MemoryPicture.h"

bool LoadMemoryPicture(const CDC& dcScreen, const CString& strFile, CDC& dc, CBitmap& bitmap) {
    if ((dcScreen.GetDeviceCaps(RASTERCAPS) & RC_BITBLT) == 0 || !bitmap.LoadFile(strFile) ||
        !dc.CreateCompatibleDC(&dcScreen)) {
        return false;
    }
    dc.SelectObject(&bitmap);
    return true;
}

bool CreateMemoryPicture(const CDC& dcScreen, int cx, int cy, CDC& dc, CBitmap& bitmap) {
    if (!bitmap.CreateCompatibleBitmap(&dcScreen, cx, cy) || !dc.CreateCompatibleDC(&dcScreen)) {
        return false;
    }
    dc.SelectObject(&bitmap);
    return true;
}
