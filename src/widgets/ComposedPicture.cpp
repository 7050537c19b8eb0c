#include "widgets/ComposedPicture.h"

#include "widgets/MemoryPicture.h"

bool CreateComposedPicture(const CDC& dcScreen, int cx, int cy, int nStockBrush, CDC& dc, CBitmap& bitmap) {
    if (!CreateMemoryPicture(dcScreen, cx, cy, dc, bitmap)) {
        return false;
    }
    dc.SelectStockObject(nStockBrush);
    dc.SelectStockObject(WHITE_PEN);
    dc.PatBlt(0, 0, cx, cy, PATCOPY);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(0);
    return true;
}
